#include "core/link/ReplyDispatcher.h"

#include "core/link/CommandCatalogue.h"
#include "core/link/LinkEngine.h"
#include "core/link/LinkFailure.h"
#include "core/link/LinkUi.h"
#include "core/link/WireFormat.h"
#include "core/shared/LinkState.h"
#include "core/shared/ServoStatus.h"
#include "core/shared/TextCatalogue.h"

#include <algorithm>
#include <array>
#include <optional>

namespace velora {

void ReplyDispatcher::registerHandler(const QString& code, Handler handler) {
    handlers_.insert(code, std::move(handler));
}

void ReplyDispatcher::unregisterHandler(const QString& code) {
    handlers_.remove(code);
}

bool ReplyDispatcher::answersLastCommand(const QString& text) const {
    const LinkSupervision& run = engine_.state().run();
    const CommandSender& sender = engine_.sender();
    if (sender.frameHeld())
        return false;
    if (wire::answers(text, run.LastCommand))
        return answered_ != sender.sequence();
    // Once a capture is armed the drive sends the trigger and the record by itself.
    const QString code = wire::codeOf(text);
    return run.Wave != WaveState::Idle &&
           (code == QLatin1String("wr") || code == QLatin1String("wd")) &&
           !run.LastCommand.isEmpty() &&
           text.front().toUpper() == run.LastCommand.front().toUpper();
}

void ReplyDispatcher::DispatchReply(const QString& text) {
    LinkState& s = engine_.state();
    LinkSupervision& run = engine_.supervision();
    // A stale reply, one to an earlier command or one from another axis would otherwise end
    // the wait for the real answer, or be stored as the data of the wrong drive.
    if (!answersLastCommand(text)) {
        s.ReceiveBuffer.clear();
        return;
    }
    ++taken_;
    const bool supervised = run.AwaitingReply;
    const quint64 command = engine_.sender().sequence();
    if (supervised && run.RetryCount > 0)
        engine_.sender().answeredAfterResends();
    run.ReplyCode = wire::codeOf(text);
    if (!wire::isPollingCode(run.ReplyCode) || run.EchoPolls)
        engine_.ui().setComText(1, text);
    run.AwaitingReply = false;
    run.MissedPolls = 0;
    // A write reply leaves the windows locked: its chain sends the next write or ends.
    if (!commands::isWriteReply(run.ReplyCode))
        engine_.EnableControls(true);

    if (run.ReplyCode != QLatin1String("ER"))
        refusedPoll_.clear();
    if (route(run.ReplyCode, text) == ReplyStatus::Malformed)
        malformedReply(text);  // its Retry asks the same command again: not answered yet
    else if (supervised)
        answered_ = command;
    s.ReceiveBuffer.clear();
}

ReplyStatus ReplyDispatcher::route(const QString& code, const QString& text) {
    if (const auto handler = handlers_.constFind(code); handler != handlers_.constEnd()) {
        return (*handler)(text);
    }
    if (code == QLatin1String("ER")) {
        const QChar digit = text.size() > 3 ? text.at(3) : QChar();
        if (!digit.isDigit())
            return ReplyStatus::Malformed;
        ErrorReply(text);
        return ReplyStatus::Handled;
    }
    if (commands::isRoutedReply(code))
        return ReplyStatus::Handled;  // family not loaded
    // Any other reply acknowledges an operating command: the monitor chain goes on.
    const LinkState& s = engine_.state();
    const LinkSupervision& run = s.run();
    if (s.RealTimeMonitor && run.Wave == WaveState::Idle)
        engine_.sendPoll();
    return ReplyStatus::Handled;
}

void ReplyDispatcher::ErrorReply(const QString& text) {
    LinkState& s = engine_.state();
    LinkSupervision& run = engine_.supervision();
    const int errorClass = text.size() > 3 ? text.at(3).digitValue() : -1;
    const Language lang = s.LanguageId;
    QString message;
    switch (errorClass) {
        case 0:
            message = TextCatalogue::text(lang, Text::LinkIllegalCommandString);
            break;
        case 1:
            message = TextCatalogue::text(lang, Text::LinkIllegalData);
            break;
        case 2:
            message = TextCatalogue::text(lang, Text::LinkInputMethodError) +
                      QStringLiteral("\n\n") +
                      TextCatalogue::text(lang, Text::LinkCheckParameter45);
            break;
        case 3:
            message = TextCatalogue::text(lang, Text::LinkCommandExecutionFailure) +
                      ExecutionFailureDetail();
            break;
        default:
            break;
    }
    if (!message.isEmpty()) {
        message = TextCatalogue::text(lang, Text::MsgCommErrorCaption) +
                  QStringLiteral(" %1:\n").arg(errorClass) + message;
    }
    const bool pollRefused = wire::codeOf(run.LastCommand) == QLatin1String("ma");
    const bool refusedAgain = pollRefused && text == refusedPoll_;
    refusedPoll_ = pollRefused && !refusedAgain ? text : QString();
    if (refusedAgain) {
        // The monitor stops, so that the user can act; the next poll would be refused again.
        s.RealTimeMonitor = false;
        run.MonitorRunning = false;
        engine_.ui().showRealTimeMonitorOff();
        message += QStringLiteral("\n\n") +
                   TextCatalogue::text(lang, Text::LinkDriveRefusedMonitorRequest);
    }
    engine_.pauseTimer1();
    engine_.showError(message, TextCatalogue::text(lang, Text::MsgCommErrorCaption));
    run.ParamTransferActive = false;
    run.PointTransferActive = false;
    run.ComTableTransferActive = false;
    if (run.BusyDialogShown)
        engine_.HideDialog();
    engine_.EnableControls(true);
    // A wave capture keeps the line to itself; its own end restarts the chain.
    if (!refusedAgain && run.Wave == WaveState::Idle)
        engine_.sendPoll();
    engine_.resumeTimer1();
}

QString ReplyDispatcher::ExecutionFailureDetail() const {
    const LinkState& s = engine_.state();
    const LinkSupervision& run = s.run();
    // Only a status word the monitor keeps fresh says why the drive refused.
    if (!run.MonitorRunning || !s.RealTimeMonitor)
        return {};
    const QString code = wire::codeOf(run.LastCommand);
    const ServoStatus status(s.ServoStatus);
    static const std::array<QLatin1String, 13> motionCodes{
        QLatin1String("OF"), QLatin1String("ON"), QLatin1String("ZO"), QLatin1String("ZF"),
        QLatin1String("VO"), QLatin1String("VF"), QLatin1String("PJ"), QLatin1String("NJ"),
        QLatin1String("JF"), QLatin1String("S0"), QLatin1String("S1"), QLatin1String("S2"),
        QLatin1String("S3")};
    std::optional<Text> reason;
    if (code == QLatin1String("SO")) {
        if (status.alarm()) {
            reason = Text::LinkInAlarm;
        } else if (status.emergencyStop()) {
            reason = Text::LinkInEmergencyStop;
        }
    } else if (std::find(motionCodes.begin(), motionCodes.end(), code) != motionCodes.end()) {
        if (!status.servoOn()) {
            reason = Text::LinkInServoOff;
        } else if (status.pointTableRunning()) {
            reason = Text::LinkPointTableRunning;
        }
    } else if (code == QLatin1String("TP")) {
        if (!status.zeroReturnFinished())
            reason = Text::LinkZeroReturnNotFinished;
    } else if (code == QLatin1String("RT")) {
        if (status.servoOn())
            reason = Text::LinkInServoOn;
    }
    if (!reason)
        return {};
    return QStringLiteral("\n\n") + TextCatalogue::text(s.LanguageId, *reason);
}

void ReplyDispatcher::malformedReply(const QString& text) {
    LinkState& s = engine_.state();
    LinkSupervision& run = engine_.supervision();
    Transport* transport = engine_.transport();
    const bool usb = transport && transport->backEnd() == BackEnd::UsbSerial;
    engine_.pauseTimer1();
    if (usb)
        transport->clearReceiveSpool();
    const bool retry =
        engine_.askRetry(linkfailure::unreadableReply(engine_, text),
                         TextCatalogue::text(s.LanguageId, Text::MsgCommunicationFailureCaption));
    if (retry) {
        run.RetryCount = 0;
        run.TickCount = 0;
        engine_.SendByteData(run.LastCommand);
    } else {
        run.AwaitingReply = false;
        s.RealTimeMonitor = false;
        engine_.ui().showRealTimeMonitorOff();
        if (usb)
            transport->setTransmitEnable(false);
        engine_.resetWaveDisplay();
        engine_.EnableControls(true);
    }
    engine_.resumeTimer1();
}

}  // namespace velora
