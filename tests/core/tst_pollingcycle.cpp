#include "core/link/PollingCycle.h"
#include "core/shared/TextCatalogue.h"
#include "support/LinkRig.h"

#include <QtTest>

using namespace velora;
using velora::test::LinkRig;

// The polling timer's slots, link loss and the wave progress display.
class TestPollingCycle : public QObject {
    Q_OBJECT
private slots:
    void slotEverySecondTick() {
        LinkRig rig;
        rig.ticks(1);
        QVERIFY(rig.sent().isEmpty());
        rig.ticks(1);
        QCOMPARE(rig.sent(), QStringList{"1ma"});
        rig.port->reply(QStringLiteral("1ma0"));
        rig.ticks(4);
        QCOMPARE(rig.sent().size(), 3);
        // An outstanding command suspends them.
        rig.engine.SendCommand(QStringLiteral("1pa"));
        rig.ticks(8);
        QCOMPARE(rig.sent().mid(3), QStringList{"1pa"});
    }

    void queuedCommandTakesTheSlot_data() {
        QTest::addColumn<int>("axis");
        QTest::addColumn<QString>("command");
        QTest::newRow("one axis") << 1 << "1HC";
        QTest::newRow("all axes, which are never polled") << 15 << "FSO";
    }
    void queuedCommandTakesTheSlot() {
        QFETCH(int, axis);
        QFETCH(QString, command);
        LinkRig rig;
        rig.state.AxisNumber = axis;
        rig.engine.PostCommand(command);
        rig.ticks(2);
        QCOMPARE(rig.sent(), QStringList{command});
        QVERIFY(rig.state.run().QueuedCommand.isEmpty());
        QCOMPARE(rig.state.run().MissedPolls, 0);  // a command slot is no poll
    }

    void nothingToSend_data() {
        QTest::addColumn<bool>("online");
        QTest::addColumn<bool>("monitor");
        QTest::addColumn<int>("axis");
        QTest::addColumn<WaveState>("waveState");
        QTest::newRow("offline") << false << true << 1 << WaveState::Idle;
        QTest::newRow("monitor off") << true << false << 1 << WaveState::Idle;
        QTest::newRow("all axes") << true << true << 15 << WaveState::Idle;
        QTest::newRow("wave capture") << true << true << 1 << WaveState::Armed;
    }
    void nothingToSend() {
        QFETCH(bool, online);
        QFETCH(bool, monitor);
        QFETCH(int, axis);
        QFETCH(WaveState, waveState);
        LinkRig rig;
        rig.state.Online = online;
        rig.state.RealTimeMonitor = monitor;
        rig.state.AxisNumber = axis;
        rig.engine.setWaveState(waveState);
        rig.engine.setMonitorRunning(true);
        rig.ticks(8);
        QVERIFY(rig.sent().isEmpty());
        QCOMPARE(rig.ui.comLive, online && monitor);
        QVERIFY(rig.ui.clockUpdates >= 8);
        if (!monitor)
            QVERIFY(!rig.state.run().MonitorRunning);  // the run ends with the option
    }

    void linkLostAfterFourthUnansweredPoll() {
        LinkRig rig;
        rig.engine.setMonitorRunning(true);
        rig.state.AlarmSeen = true;
        rig.ui.comText[0] = QStringLiteral("1AD");
        const int consoleBefore = rig.ui.consoleDisabled;
        rig.ticks(6);  // three unanswered polls
        QCOMPARE(rig.sent().size(), 3);
        QCOMPARE(rig.ui.consoleDisabled, consoleBefore);
        QVERIFY(rig.state.run().MonitorRunning);
        rig.ticks(2);
        QCOMPARE(rig.state.run().MissedPolls, 3);
        QVERIFY(!rig.state.run().MonitorRunning && !rig.state.AlarmSeen);
        QCOMPARE(rig.ui.consoleDisabled, consoleBefore + 1);
        QVERIFY(rig.ui.transferButtonsDisabled > 0 && rig.ui.controlsEnabled);
        QVERIFY(rig.ui.comText[0].isEmpty());
        rig.ticks(1);
        QVERIFY(!rig.ui.comLive);
        // Any reply brings the count back.
        rig.port->reply(QStringLiteral("1ma0"));
        QCOMPARE(rig.state.run().MissedPolls, 0);
    }

    void waveProgress_data() {
        QTest::addColumn<int>("backEnd");
        QTest::addColumn<Language>("language");
        QTest::addColumn<QByteArray>("partial");
        QTest::addColumn<QString>("marks");
        const QByteArray record = QByteArray("1wd") + QByteArray(397, '0');
        QTest::newRow("RS-232C, 400 characters")
            << int(BackEnd::Rs232) << Language::English << record << QStringLiteral("######");
        QTest::newRow("USB keeps the STX")
            << int(BackEnd::UsbSerial) << Language::English << QByteArray("\x02") + record.left(93)
            << QStringLiteral("####");
        QTest::newRow("Japanese") << int(BackEnd::Rs232) << Language::Japanese << record.left(10)
                                  << QStringLiteral("\u25A0");
        QTest::newRow("another reply")
            << int(BackEnd::Rs232) << Language::English << QByteArray("1ma00") << QString();
    }
    void waveProgress() {
        QFETCH(int, backEnd);
        QFETCH(Language, language);
        QFETCH(QByteArray, partial);
        QFETCH(QString, marks);
        LinkRig rig(static_cast<BackEnd>(backEnd));
        rig.state.LanguageId = language;
        rig.engine.setWaveState(WaveState::Triggered);
        rig.ui.readingShown = true;
        rig.state.ReceiveBuffer = partial;
        rig.ticks(1);
        QCOMPARE(rig.ui.waveMarks, marks);
        if (marks.isEmpty()) {
            // not the wave data: nothing to show yet
            QCOMPARE(rig.state.run().Wave, WaveState::Triggered);
            return;
        }
        QCOMPARE(rig.ui.waveLabel, TextCatalogue::text(language, Text::WaveWaveDataReceiving));
        QCOMPARE(rig.state.run().Wave, WaveState::ReceivingRecord);
        QVERIFY(!rig.ui.controlsEnabled);
        QVERIFY(!rig.ui.waveCancelEnabled);
    }
};

QTEST_GUILESS_MAIN(TestPollingCycle)
#include "tst_pollingcycle.moc"
