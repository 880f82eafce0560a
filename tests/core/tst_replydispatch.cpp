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
constexpr quint32 kServoOn = 1U << 0;
constexpr quint32 kAlarm = 1U << 1;
constexpr quint32 kEmergencyStop = 1U << 2;
constexpr quint32 kPointTableRunning = 1U << 13;
constexpr quint32 kZeroReturnDone = 1U << 15;
}  // namespace

// Routing of replies, error replies and the malformed-reply failure.
class TestReplyDispatch : public QObject {
    Q_OBJECT
private slots:
    // Replies that no handler takes. (Routing itself is seen by every exchange with the
    // simulated drive.)
    void repliesWithoutHandler() {
        LinkRig rig;
        // The reply to a command, and what the link sent in answer to it.
        const auto exchange = [&rig](const QString& command, const QString& reply) {
            rig.engine.SendCommand(command);
            rig.port->frames.clear();
            rig.port->reply(reply);
            return rig.sent();
        };
        // A known family whose handler is not loaded: taken, and no poll follows.
        rig.state.ReceiveBuffer = "1AR0";
        QVERIFY(exchange(QStringLiteral("1AR"), QStringLiteral("1AR")).isEmpty());
        QCOMPARE(rig.state.run().ReplyCode, QStringLiteral("AR"));
        QVERIFY(rig.state.ReceiveBuffer.isEmpty() && rig.ui.messages.isEmpty());
        // An acknowledgement sends the next poll, unless a capture holds the chain or the
        // monitor is off; an error reply polls even then.
        const QString so = QStringLiteral("1SO");
        QCOMPARE(exchange(so, so), QStringList{"1ma"});
        rig.engine.setWaveState(WaveState::Armed);
        QVERIFY(exchange(so, so).isEmpty());
        rig.engine.setWaveState(WaveState::Idle);
        rig.state.RealTimeMonitor = false;
        QVERIFY(exchange(so, so).isEmpty());
        QCOMPARE(exchange(so, QStringLiteral("1ER0")), QStringList{"1ma"});
    }

    void writeRepliesKeepWindowsLocked() {
        LinkRig rig;
        rig.engine.SendCommand(QStringLiteral("1PW5;64"));
        rig.port->reply(QStringLiteral("1PW"));
        QVERIFY(!rig.ui.controlsEnabled && !rig.state.run().AwaitingReply);
        rig.engine.SendCommand(QStringLiteral("1PR5"));
        rig.port->reply(QStringLiteral("1PR00000064"));
        QVERIFY(rig.ui.controlsEnabled);
    }

    void errorReplies_data() {
        QTest::addColumn<QString>("lastCommand");
        QTest::addColumn<QString>("reply");
        QTest::addColumn<quint32>("status");
        QTest::addColumn<bool>("monitorFresh");
        QTest::addColumn<QString>("message");
        const QString e3 = en(Text::MsgCommErrorCaption) + QStringLiteral(" 3:\n") +
                           en(Text::LinkCommandExecutionFailure);
        const auto because = [&e3](Text reason) {
            return e3 + QStringLiteral("\n\n") + en(reason);
        };
        const auto error = [](int n) {
            return en(Text::MsgCommErrorCaption) + QStringLiteral(" %1:\n").arg(n);
        };
        // clang-format off
        QTest::newRow("class 0") << "1XX" << "1ER0" << 0U << true << error(0) + en(Text::LinkIllegalCommandString);
        QTest::newRow("class 1") << "1PW5;FFFF" << "1ER1" << 0U << true << error(1) + en(Text::LinkIllegalData);
        QTest::newRow("class 2") << "1SP3" << "1ER2" << 0U << true
                                 << error(2) + en(Text::LinkInputMethodError) + QStringLiteral("\n\n") + en(Text::LinkCheckParameter45);
        QTest::newRow("SO in alarm") << "1SO" << "1ER3" << (kAlarm | kEmergencyStop) << true
                                     << because(Text::LinkInAlarm);
        QTest::newRow("SO in emergency stop") << "1SO" << "1ER3" << kEmergencyStop << true
                                              << because(Text::LinkInEmergencyStop);
        QTest::newRow("jog in servo off") << "1PJ" << "1ER3" << 0U << true << because(Text::LinkInServoOff);
        QTest::newRow("start while table runs") << "1ON" << "1ER3"
                                                << (kServoOn | kPointTableRunning) << true
                                                << because(Text::LinkPointTableRunning);
        QTest::newRow("TP before zero return") << "1TP" << "1ER3" << kServoOn << true
                                               << because(Text::LinkZeroReturnNotFinished);
        QTest::newRow("TP after zero return") << "1TP" << "1ER3" << kZeroReturnDone << true << e3;
        QTest::newRow("RT in servo on") << "1RT" << "1ER3" << kServoOn << true << because(Text::LinkInServoOn);
        QTest::newRow("stale status gives no reason") << "1TP" << "1ER3" << 0U << false << e3;
        QTest::newRow("other code") << "1NW" << "1ER3" << 0U << true << e3;
        QTest::newRow("class 7 is empty") << "1SO" << "1ER7" << 0U << true << QString();
        // clang-format on
    }
    void errorReplies() {
        QFETCH(QString, lastCommand);
        QFETCH(QString, reply);
        QFETCH(quint32, status);
        QFETCH(bool, monitorFresh);
        QFETCH(QString, message);
        LinkRig rig;
        rig.state.ServoStatus = status;
        rig.engine.setMonitorRunning(monitorFresh);
        rig.engine.beginTransfer(Transfer::Params);
        rig.engine.ShowBusyDialog();
        rig.engine.SendCommand(lastCommand);
        rig.port->reply(reply);
        QCOMPARE(rig.ui.messages.size(), 1);
        QCOMPARE(rig.ui.messages[0].kind, QStringLiteral("error"));
        QCOMPARE(rig.ui.messages[0].text, message);
        QCOMPARE(rig.ui.messages[0].caption, en(Text::MsgCommErrorCaption));
        QVERIFY(!rig.state.run().ParamTransferActive && !rig.ui.busyDialogShown);
        QVERIFY(rig.ui.controlsEnabled);
        QCOMPARE(rig.lastSent(), QStringLiteral("1ma"));
    }

    void malformedReplyAsksRetryOrCancel() {
        LinkRig rig(BackEnd::UsbSerial);
        for (const char* code : {"PR", "ma"}) {
            rig.engine.dispatcher().registerHandler(
                QLatin1String(code), [](const QString&) { return ReplyStatus::Malformed; });
        }
        // Retry: the receive spool is cleared and the command sent again with a fresh count.
        rig.engine.SendCommand(QStringLiteral("1PR5"));
        rig.engine.supervisionForTests().RetryCount = 3;
        rig.ui.answerRetry = true;
        rig.port->reply(QStringLiteral("1PRZZ"));
        QCOMPARE(rig.ui.messages.size(), 1);
        QVERIFY(rig.ui.messages[0].text.startsWith(
            en(Text::MsgCommunicationFailure) +
            QStringLiteral("\nThe reply to 'PR5' from axis 1 at 9600 baud on "
                           "/dev/ttyS0 cannot be read: 1PRZZ")));
        QCOMPARE(rig.port->spoolClears, 1);
        QCOMPARE(rig.sent(), (QStringList{"1PR5", "1PR5"}));
        QCOMPARE(rig.state.run().RetryCount, 0);
        QVERIFY(rig.state.RealTimeMonitor);

        // Cancel switches the monitor off.
        rig.ui.answerRetry = false;
        rig.engine.beginTransfer(Transfer::Params);
        rig.engine.setWaveState(WaveState::Triggered);
        rig.engine.sendPoll();
        rig.port->reply(QStringLiteral("1maXYZ"));
        QVERIFY(!rig.state.RealTimeMonitor && rig.ui.realTimeMonitorShownOff);
        QCOMPARE(rig.state.run().Wave, WaveState::Idle);
        QVERIFY(rig.ui.controlsEnabled && rig.sent().size() == 3);
        QVERIFY(rig.state.run().ParamTransferActive);  // transfers are left as they were

        // An error reply without its class digit is malformed too.
        rig.port->reply(QStringLiteral("1ER"));
        QCOMPARE(rig.ui.messages.size(), 3);
        QCOMPARE(rig.ui.messages[2].kind, QStringLiteral("retry"));
    }
};

QTEST_GUILESS_MAIN(TestReplyDispatch)
#include "tst_replydispatch.moc"
