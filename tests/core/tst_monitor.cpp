#include "core/monitor/RealTimeMonitor.h"
#include "support/LinkRig.h"

#include <QtTest>

using namespace velora;
using velora::test::LinkRig;

namespace {

// A field as the drive writes it: fixed width, upper-case hex, two's complement.
QString hex(qint64 value, int width) {
    const quint64 mask = (quint64{1} << (4 * width)) - 1;
    return QString::number(static_cast<quint64>(value) & mask, 16)
        .toUpper()
        .rightJustified(width, QLatin1Char('0'));
}

// A monitor reply for axis 1 from the raw field values, in the order the drive sends them.
QString maReply(const QList<qint64>& raw, bool withTorquePeak = true) {
    static const int widths[] = {8, 8, 8, 8, 4, 4, 4, 2, 2, 2, 4, 8, 4, 4, 2};
    QString text = QStringLiteral("1ma");
    for (int i = 0; i < 15; ++i)
        text += hex(raw.value(i), widths[i]);
    text += QString(19, QLatin1Char('0'));
    if (withTorquePeak)
        text += hex(raw.value(15), 4);
    return text;
}

QString reply(int status, int alarm) {
    return maReply({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, status, alarm, 0});
}

}  // namespace

// The monitor reply: decoding, what the windows are told, and the command that follows.
class TestMonitor : public QObject {
    Q_OBJECT
private slots:
    void decodesAndScales() {
        const QString text = maReply({-10, 65535, 123456789, -1, -1, 3000, 1234, 255, 3, 4, 1250,
                                      -70000, 0x0103, 0xFFFF, 0, -5});
        QCOMPARE(text.size(), 3 + MonitorSnapshot::PayloadLength);
        const auto m = MonitorSnapshot::decode(text, true);
        QVERIFY(m);
        const QStringList expected{"-10", "65535", "123456789", "-1",   "-1",     "3000", "12.34",
                                   "255", "3",     "4",         "12.5", "-70000", "-0.05"};
        for (int i = 0; i < MonitorSnapshot::ValueCount; ++i)
            QCOMPARE(m->valueText(i, QLocale::c()), expected[i]);
        QCOMPARE(m->IoWord, quint16{0x0103});
        QCOMPARE(m->StatusWord, 65535U);  // all sixteen bits, never -1
        QCOMPARE(m->valueText(6, QLocale(QLocale::German)), QStringLiteral("12,34"));
        QCOMPARE(MonitorSnapshot::percentText(-1.0, QLocale::c()), QStringLiteral("-1"));
        QCOMPARE(MonitorSnapshot::percentText(12.0, QLocale::c()), QStringLiteral("12"));

        // Older drives send no torque peak; a cut reply reads as zeros.
        const auto old = MonitorSnapshot::decode(maReply({7}, false), false);
        QVERIFY(old && !old->TorquePeak && old->valueText(12).isEmpty());
        const auto cut = MonitorSnapshot::decode(QStringLiteral("1ma000000"), true);
        QVERIFY(cut && cut->NowPosition == 0 && cut->TorquePeak == 0.0);
    }

    void malformedFieldAsksRetryOrCancel_data() {
        QTest::addColumn<int>("position");  // 1-based in the payload
        QTest::addColumn<int>("version");
        QTest::addColumn<bool>("malformed");
        QTest::newRow("now position") << 5 << 110 << true;
        QTest::newRow("status word") << 68 << 110 << true;
        QTest::newRow("alarm code") << 72 << 110 << true;
        QTest::newRow("torque peak") << 93 << 110 << true;
        QTest::newRow("torque peak unread") << 93 << 100 << false;
        QTest::newRow("unread filler") << 80 << 110 << false;
    }
    void malformedFieldAsksRetryOrCancel() {
        QFETCH(int, position);
        QFETCH(int, version);
        QFETCH(bool, malformed);
        LinkRig rig;
        RealTimeMonitor monitor(rig.engine);
        rig.state.DriverVersion = version;
        QString text = reply(0x0001, 0);
        text[2 + position] = QLatin1Char('G');
        rig.port->reply(text);
        QCOMPARE(rig.ui.messages.size(), malformed ? 1 : 0);  // Retry/Cancel
        QCOMPARE(rig.state.ServoStatus, malformed ? 0U : 1U);
    }

    void nextCommand_data() {
        QTest::addColumn<bool>("monitorOn");
        QTest::addColumn<bool>("running");
        QTest::addColumn<int>("alarm");
        QTest::addColumn<QString>("queued");
        QTest::addColumn<QStringList>("sent");
        // The first reply of a run asks for the identification, before any alarm or queue.
        QTest::newRow("first reply of a run")
            << true << false << 5 << "1QP" << QStringList{"1PR77"};
        QTest::newRow("alarm before queued") << true << true << 5 << "1QP" << QStringList{"1AD"};
        QTest::newRow("queued before poll") << true << true << 0 << "1SO" << QStringList{"1SO"};
        QTest::newRow("monitor off") << false << true << 0 << "" << QStringList{};
        QTest::newRow("monitor off, queued") << false << false << 0 << "1QP" << QStringList{"1QP"};
        QTest::newRow("monitor off, alarm") << false << false << 1 << "" << QStringList{"1AD"};
    }
    void nextCommand() {
        QFETCH(bool, monitorOn);
        QFETCH(bool, running);
        QFETCH(int, alarm);
        QFETCH(QString, queued);
        QFETCH(QStringList, sent);
        LinkRig rig(BackEnd::Rs232, monitorOn);
        RealTimeMonitor monitor(rig.engine);
        rig.engine.setMonitorRunning(running);
        rig.engine.queueCommand(queued);
        rig.port->reply(reply(0, alarm));
        QCOMPARE(rig.sent(), sent);
        QCOMPARE(rig.state.run().QueuedCommand, sent.contains(queued) ? QString() : queued);
        QCOMPARE(rig.state.AlarmSeen, sent == QStringList{"1AD"});
        QVERIFY(rig.state.run().MonitorRunning);
    }

    void unansweredIdentificationIsAskedAgainAtMostOncePerMinute() {
        LinkRig rig;
        RealTimeMonitor monitor(rig.engine);
        QDateTime now = QDateTime::fromSecsSinceEpoch(0);
        rig.engine.setClock([&now] { return now; });
        rig.port->reply(reply(0, 0));  // asks "1PR77", which is never answered
        for (int i = 0; i < 20 && rig.ui.messages.isEmpty(); ++i)
            rig.ticks(1);
        QCOMPARE(rig.ui.messages.size(), 1);  // the failure question, answered Cancel
        QStringList answers;
        for (const int seconds : {30, 31, 0}) {
            now = now.addSecs(seconds);
            rig.engine.sendPoll();
            rig.port->frames.clear();
            rig.port->reply(reply(0, 0));
            answers += rig.sent();
        }
        QCOMPARE(answers, (QStringList{"1ma", "1PR77", "1ma"}));
    }

    void alarmWhileTurningIsShown() {
        LinkRig rig;
        RealTimeMonitor monitor(rig.engine);
        QList<ServoStatusView> views;
        connect(&monitor, &RealTimeMonitor::ShowServoStatus,
                [&](const ServoStatusView& v) { views.append(v); });
        rig.port->reply(reply(0x0022, 0));  // servo off, alarm, turning, resolution bit clear
        QCOMPARE(rig.state.ServoStatus, 0x0022U);
        QCOMPARE(views.size(), 1);
        const ServoStatusView& fault = views[0];
        QVERIFY(!fault.servoOn && fault.alarm && fault.running);
        QCOMPARE(fault.captions[5], QStringLiteral(": ON"));
        QCOMPARE(fault.captions[10], QStringLiteral(": 0"));
        QCOMPARE(fault.alarmLampColours().back, monitorcolour::PaleRed);
    }

    // With the monitor off the reset waits for the polling slot, not for a reply.
    void torquePeakResetWithTheMonitorOff() {
        LinkRig rig(BackEnd::Rs232, false);
        RealTimeMonitor monitor(rig.engine);
        monitor.resetTorquePeak();
        QVERIFY(rig.sent().isEmpty());
        rig.ticks(2);
        QCOMPARE(rig.sent(), QStringList{"1QP"});
    }
};

QTEST_GUILESS_MAIN(TestMonitor)
#include "tst_monitor.moc"
