#include "core/link/FrameTrace.h"
#include "core/link/ReplyDispatcher.h"
#include "core/shared/TextCatalogue.h"
#include "support/LinkRig.h"

#include <QtTest>

using namespace velora;
using velora::test::LinkRig;

namespace {
QString en(Text id) {
    return TextCatalogue::text(Language::English, id);
}
}  // namespace

// Sending, supervision and the failure question.
class TestLinkEngine : public QObject {
    Q_OBJECT
private slots:
    void supervisionAndLocking_data() {
        QTest::addColumn<int>("axis");
        QTest::addColumn<bool>("alarmSeen");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("supervised");
        QTest::addColumn<bool>("locks");
        QTest::newRow("operating command") << 1 << false << "1SO" << true << true;
        QTest::newRow("reset") << 1 << false << "1RT" << false << false;
        QTest::newRow("poll") << 1 << false << "1ma" << false << false;
        QTest::newRow("wave start") << 1 << false << "1wm" << true << false;
        QTest::newRow("all axes by text") << 1 << false << "FSO" << false << false;
        QTest::newRow("all axes configured") << 15 << false << "FSO" << false << false;
        QTest::newRow("alarm pending") << 1 << true << "1AR" << false << true;
    }
    void supervisionAndLocking() {
        QFETCH(int, axis);
        QFETCH(bool, alarmSeen);
        QFETCH(QString, text);
        QFETCH(bool, supervised);
        QFETCH(bool, locks);
        LinkRig rig;
        rig.state.AxisNumber = axis;
        rig.state.AlarmSeen = alarmSeen;
        rig.engine.SendCommand(text);
        QCOMPARE(rig.state.run().AwaitingReply, supervised);
        QCOMPARE(rig.ui.controlsEnabled, !locks);
        QCOMPARE(rig.ui.transferButtonsDisabled, axis == 15 ? 1 : 0);
        QCOMPARE(rig.sent(), QStringList{text});
    }

    void consoleEchoAndItsSwitch() {
        LinkRig rig;
        rig.ui.comText[1] = QStringLiteral("old reply");
        rig.engine.SendCommand(QStringLiteral("1SO"));
        QCOMPARE(rig.ui.comText[0], QStringLiteral("1SO"));
        QVERIFY(rig.ui.comText[1].isEmpty());
        rig.engine.SendCommand(QStringLiteral("1ma"));
        QCOMPARE(rig.ui.comText[0], QStringLiteral("1SO"));  // polls stay quiet
        // The switch takes exactly the middle button with Ctrl+Alt; switched off, it clears.
        auto& polling = rig.engine.polling();
        polling.echoSwitch(Qt::LeftButton, Qt::ControlModifier | Qt::AltModifier);
        polling.echoSwitch(Qt::MiddleButton,
                           Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier);
        QVERIFY(!rig.state.run().EchoPolls);
        rig.engine.supervisionForTests().EchoPolls = true;
        polling.echoSwitch(Qt::MiddleButton, Qt::ControlModifier | Qt::AltModifier);
        QVERIFY(!rig.state.run().EchoPolls && rig.ui.comText[0].isEmpty());
    }

    void refusedTextIsNotSent_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("detail");  // null: refused without a message
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("31 characters") << "1PW" + QString(28, QLatin1Char('1')) << "(31 / 30)";
        QTest::newRow("DEL typed") << QStringLiteral("1SO\x7F") << "";
    }
    void refusedTextIsNotSent() {
        QFETCH(QString, text);
        QFETCH(QString, detail);
        LinkRig rig;
        rig.engine.supervisionForTests().LastCommand = QStringLiteral("1PR5");
        rig.engine.SendCommand(text);
        QVERIFY(rig.sent().isEmpty() && !rig.state.run().AwaitingReply);
        QCOMPARE(rig.state.run().LastCommand, QStringLiteral("1PR5"));
        QCOMPARE(rig.ui.messages.size(), detail.isNull() ? 0 : 1);
        if (detail.isNull())
            return;
        QVERIFY(rig.ui.messages[0].text.startsWith(en(Text::LinkIllegalCommandString)));
        QVERIFY(rig.ui.messages[0].text.contains(detail));
        QVERIFY(!rig.ui.messages[0].timer1ActiveWhileOpen);
        QVERIFY(rig.engine.timer1Active());
    }

    void transmitTimeArmsTimer2() {
        LinkRig rig;
        rig.engine.SendCommand(QStringLiteral("1PR77"));  // 8 characters on the line
        QCOMPARE(rig.state.run().TransmitTimeMs, 8);      // 8.33 ms at 9600 baud
        QVERIFY(rig.engine.timer2Armed());
        QCOMPARE(rig.engine.timer2IntervalMs(), 18);
        rig.state.BaudRate = QStringLiteral("115200");
        rig.engine.SendCommand(QString(30, QLatin1Char('1')));  // 33 x 10 bits = 2.86 ms
        QCOMPARE(rig.state.run().TransmitTimeMs, 3);
        rig.engine.endOfTransmission();
        QVERIFY(!rig.engine.timer2Armed());
        QCOMPARE(rig.port->transmissionsDone, 1);
    }

    void broadcastIsAnnouncedAndNeverResent() {
        LinkRig rig;
        rig.engine.SendCommand(QStringLiteral("FSO"));
        rig.engine.endOfTransmission();
        QCOMPARE(rig.ui.messages.size(), 1);
        QCOMPARE(rig.ui.messages[0].kind, QStringLiteral("notice"));
        QCOMPARE(rig.ui.messages[0].text,
                 en(Text::MsgAllAxisCommandSent) + QLatin1Char('\n') + en(Text::MsgNoReply));
        QCOMPARE(rig.ui.messages[0].caption, en(Text::MsgCommandSent));
        rig.state.RealTimeMonitor = false;
        rig.ticks(20);
        QCOMPARE(rig.sent(), QStringList{"FSO"});
    }

    void resendTiming_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("interval");
        QTest::addColumn<int>("firstResendTick");
        QTest::newRow("read-all") << "1pa" << 250 << 9;
        QTest::newRow("read-all, 200 ms") << "1ta" << 200 << 11;
        QTest::newRow("read-all, 2000 ms") << "1ca" << 2000 << 2;
    }
    void resendTiming() {
        QFETCH(QString, text);
        QFETCH(int, interval);
        QFETCH(int, firstResendTick);
        LinkRig rig;
        rig.engine.setPollIntervalMs(interval);
        rig.engine.SendCommand(text);
        rig.ticks(firstResendTick - 1);
        QCOMPARE(rig.sent().size(), 1);
        rig.ticks(1);
        QCOMPARE(rig.sent(), (QStringList{text, text}));
        QCOMPARE(rig.state.run().RetryCount, 1);
    }

    // A drive slower than the re-send answers both frames: the second answer belongs to the
    // re-send, not to the next command of the same code, which waits until it has passed.
    void lateAnswerOfAReSendIsNotTheNextAnswer() {
        LinkRig rig;
        rig.engine.SendCommand(QStringLiteral("1TW0;1"));
        rig.ticks(2);
        rig.port->reply(QStringLiteral("1TW"));  // the first frame's answer, late
        QVERIFY(!rig.state.run().AwaitingReply);
        rig.port->reply(QStringLiteral("1TW"));  // a duplicate before anything else is sent
        rig.engine.SendCommand(QStringLiteral("1TW1;2"));
        QCOMPARE(rig.sent().size(), 2);          // held back
        rig.port->reply(QStringLiteral("1TW"));  // the re-send's answer
        QVERIFY(rig.state.run().AwaitingReply);
        rig.ticks(4);
        QCOMPARE(rig.lastSent(), QStringLiteral("1TW1;2"));
        rig.port->reply(QStringLiteral("1TW"));
        QVERIFY(!rig.state.run().AwaitingReply);
        QCOMPARE(rig.engine.dispatcher().taken(), quint64{2});
    }

    void failureQuestionAfterFifthResend() {
        LinkRig rig(BackEnd::UsbSerial);
        rig.engine.beginTransfer(Transfer::Points);
        rig.engine.setWaveState(WaveState::Armed);
        rig.ui.readingShown = true;
        rig.engine.ShowBusyDialog();
        rig.engine.SendCommand(QStringLiteral("1TR3"));
        rig.ticks(10);  // five re-sends, one every second tick
        QCOMPARE(rig.sent().size(), 6);
        QVERIFY(rig.ui.messages.isEmpty());
        rig.ui.answerRetry = true;
        rig.ticks(1);
        QCOMPARE(rig.ui.messages.size(), 1);
        const auto& question = rig.ui.messages[0];
        // The catalogue's word, then which request, axis, rate and device.
        QVERIFY(question.text.startsWith(
            en(Text::MsgCommunicationFailure) +
            QStringLiteral("\nNo answer to 'TR3' from axis 1 at 9600 baud on "
                           "/dev/ttyS0 after 5 re-sends.")));
        QCOMPARE(question.caption, en(Text::MsgCommunicationFailureCaption));
        QVERIFY(!question.timer1ActiveWhileOpen);
        // Retry: sent again at once, counters restart, the busy dialog comes back.
        QCOMPARE(rig.sent().size(), 7);
        QCOMPARE(rig.state.run().RetryCount, 0);
        QCOMPARE(rig.state.run().TickCount, 0);
        QVERIFY(rig.ui.busyDialogShown && rig.state.run().AwaitingReply &&
                rig.engine.timer1Active());

        // Cancel the next time: whatever waited for the reply is released, and asked once only.
        rig.ui.answerRetry = false;
        rig.ticks(15);
        QCOMPARE(rig.ui.messages.size(), 2);
        QVERIFY(!rig.state.run().AwaitingReply && !rig.state.run().PointTransferActive);
        QVERIFY(!rig.ui.busyDialogShown && !rig.state.run().BusyDialogShown);
        QCOMPARE(rig.state.run().Wave, WaveState::Idle);
        QVERIFY(!rig.ui.readingShown && rig.ui.wavePanelEnabled && rig.ui.controlsEnabled);
        QVERIFY(!rig.port->transmitEnable);
    }

    void failedUsbSendIsSilentAndResent() {
        LinkRig rig(BackEnd::UsbSerial);
        rig.engine.setWaveState(WaveState::Armed);
        rig.port->failSends = true;
        rig.engine.SendCommand(QStringLiteral("1wt0;1"));
        QVERIFY(!rig.engine.timer2Armed());
        QCOMPARE(rig.state.run().Wave, WaveState::Idle);
        QVERIFY(rig.ui.messages.isEmpty());
        rig.port->failSends = false;
        rig.ticks(2);
        QCOMPARE(rig.sent(), QStringList{"1wt0;1"});
    }

    void frameTraceRingKeepsTheNewest() {
        FrameTrace trace(3);
        trace.recordSent(QStringLiteral("0PR77"));
        trace.recordReceived(QStringLiteral("0PR0000006E"));
        trace.recordSent(QStringLiteral("0ma"));
        trace.recordReceived(QStringLiteral("0ma1"));
        trace.recordSent(QStringLiteral("0SO"));
        const std::vector<FrameTrace::Entry> held = trace.entriesAfter(0);
        QCOMPARE(int(held.size()), 3);
        QCOMPARE(held.front().text, QStringLiteral("0ma"));
        QCOMPARE(held.front().sequence, quint64{3});
        QCOMPARE(held[1].sinceRequestUs >= 0, true);  // a reply, timed from "0ma"
        QCOMPARE(int(trace.entriesAfter(4).size()), 1);
        trace.clear();
        QVERIFY(trace.entriesAfter(0).empty());
        trace.recordSent(QStringLiteral("0ma"));
        QCOMPARE(trace.entriesAfter(0).front().sequence, quint64{6});
    }

    void postCommand() {
        LinkRig rig;  // real-time monitor on: waits for the slot
        rig.engine.PostCommand(QStringLiteral("1PR5"));
        rig.engine.PostCommand(QStringLiteral("1PR6"));
        QVERIFY(rig.sent().isEmpty());
        QCOMPARE(rig.state.run().QueuedCommand, QStringLiteral("1PR6"));
        rig.state.RealTimeMonitor = false;
        rig.engine.PostCommand(QStringLiteral("1PR7"));
        QCOMPARE(rig.sent(), QStringList{"1PR7"});
        QVERIFY(rig.state.run().QueuedCommand.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestLinkEngine)
#include "tst_linkengine.moc"
