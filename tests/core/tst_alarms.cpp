#include "core/monitor/AlarmMonitor.h"
#include "core/monitor/IoStatus.h"
#include "support/LinkRig.h"

#include <QSignalSpy>
#include <QtTest>

using namespace velora;
using velora::test::LinkRig;

// Alarm data and the I/O status names, beyond what the windows show of them.
class TestAlarms : public QObject {
    Q_OBJECT
private slots:
    void alarmData_data() {
        QTest::addColumn<QString>("payload");
        QTest::addColumn<int>("mask");  // -1: malformed
        QTest::addColumn<QList<int>>("history");
        QTest::newRow("all active")
            << "FF0801020304050607" << 255 << QList<int>{8, 1, 2, 3, 4, 5, 6, 7};
        QTest::newRow("cut short") << "0" << 0 << QList<int>{0, 0, 0, 0, 0, 0, 0, 0};
        QTest::newRow("mask not hex") << "G00305000000000000" << -1 << QList<int>{};
        QTest::newRow("no alarm 9") << "000900000000000000" << -1 << QList<int>{};
        QTest::newRow("entry not a digit") << "0000000A0000000000" << -1 << QList<int>{};
    }
    void alarmData() {
        QFETCH(QString, payload);
        QFETCH(int, mask);
        QFETCH(QList<int>, history);
        LinkRig rig;
        AlarmData mirror;
        mirror.AlarmHistory.fill(4);
        AlarmMonitor alarms(rig.engine, mirror);
        QSignalSpy changed(&alarms, &AlarmMonitor::alarmsChanged);
        rig.engine.SendCommand(QStringLiteral("1AD"));
        rig.port->reply(QStringLiteral("1AD") + payload);
        QCOMPARE(rig.ui.messages.size(), mask < 0 ? 1 : 0);  // Retry/Cancel
        QCOMPARE(changed.size(), mask < 0 ? 0 : 1);
        if (mask < 0) {
            QCOMPARE(mirror.AlarmHistory[0], qint16{4});
            return;
        }
        QVERIFY(rig.ui.controlsEnabled);
        QCOMPARE(rig.sent(), QStringList{"1AD"});  // the chain goes on at the next slot
        for (int n = 1; n <= 8; ++n)
            QCOMPARE(mirror.active(n), (mask & (1 << (n - 1))) != 0);
        for (int i = 0; i < 8; ++i)
            QCOMPARE(mirror.AlarmHistory[i], static_cast<qint16>(history[i]));
    }

    void inputNames_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("p38");
        QTest::addColumn<int>("p46");
        QTest::addColumn<QString>("names");
        QTest::newRow("mode 2, velocity drive") << 2 << 1 << 3 << "VSTR VSEL0 VSEL1 VSEL2 DIR";
        QTest::newRow("mode 2, p46 1") << 2 << 0 << 1 << "PSEL0 STR POT NOT PSEL0";
        QTest::newRow("mode 2, p46 2") << 2 << 0 << 2 << "PSEL0 STR PJOG NJOG ARST";
        QTest::newRow("mode 2, p46 3") << 2 << 0 << 3 << "PSEL0 STR PJOG NJOG PSEL0";
        QTest::newRow("mode 3 keeps names") << 3 << 0 << 0 << "PJOG NJOG POT NOT DEC";
    }
    void inputNames() {
        QFETCH(int, mode);
        QFETCH(int, p38);
        QFETCH(int, p46);
        QFETCH(QString, names);
        const iostatus::InputNames before = iostatus::UpdateInputNames({}, 1, 0, 0);
        const iostatus::InputNames updated = iostatus::UpdateInputNames(before, mode, p38, p46);
        const QStringList expected = names.split(QLatin1Char(' '));
        for (int i = 0; i < iostatus::InputCount; ++i)
            QCOMPARE(updated[i], QStringLiteral("IN%1  (%2)").arg(i + 1).arg(expected[i]));
    }
};

QTEST_GUILESS_MAIN(TestAlarms)
#include "tst_alarms.moc"
