#include "core/link/CommandSender.h"

#include "core/link/CommandCatalogue.h"
#include "core/link/LinkEngine.h"
#include "core/link/LinkFailure.h"
#include "core/link/LinkUi.h"
#include "core/link/WireFormat.h"
#include "core/shared/LinkState.h"
#include "core/shared/Rounding.h"
#include "core/shared/TextCatalogue.h"

namespace velora {

bool CommandSender::SendCommand(const QString& text) {
    if (text.isEmpty())
        return false;
    LinkState& s = engine_.state();
    LinkSupervision& run = engine_.supervision();
    if (!reachable() || !admits(text))
        return false;
    const QString code = wire::codeOf(text);
    const bool broadcast = wire::isBroadcast(text, s.AxisNumber);

    if (s.AxisNumber == wire::AllAxes || broadcast || !commands::isSupervised(code)) {
        run.AwaitingReply = false;
    } else {
        // While an alarm is pending the drive may not answer; nothing is re-sent then.
        run.AwaitingReply = !s.AlarmSeen;
    }
    run.LastCode = code;
    run.RetryCount = 0;
    run.TickCount = 0;
    run.LastCommand = text;
    ++sequence_;
    heldFrame_.clear();
    // The frame leaves before the windows are touched: locking every control of every window
    // takes longer than a short frame on the line. No reply can be handled before this returns.
    if (run.AwaitingReply && holdTicks_ > 0 && wire::answers(text, lateAnswersOf_) &&
        wire::codeOf(text) == wire::codeOf(lateAnswersOf_))
        heldFrame_ = text;
    else
        engine_.SendByteData(text);

    if (commands::locksUi(code) && !broadcast)
        engine_.EnableControls(false);
    // No reply will come to enable anything again.
    if (s.AxisNumber == wire::AllAxes)
        engine_.DisableTransferButtons();
    if (!wire::isPollingCode(code)) {
        engine_.ui().setComText(0, text);
        engine_.ui().setComText(1, QString());
    } else if (run.EchoPolls) {
        engine_.ui().setComText(0, text);
    }
    return true;
}

bool CommandSender::PostCommand(const QString& text) {
    LinkState& s = engine_.state();
    LinkSupervision& run = engine_.supervision();
    if (!reachable())
        return false;
    run.QueuedCommand = text;
    if (s.RealTimeMonitor)
        return true;  // leaves with the next slot of the monitor chain
    const QString now = run.QueuedCommand;
    run.QueuedCommand.clear();
    return SendCommand(now);
}

bool CommandSender::reachable() const {
    const LinkState& s = engine_.state();
    const LinkSupervision& run = s.run();
    if (s.Online && run.PortOpen)
        return true;
    engine_.showError(TextCatalogue::text(s.LanguageId, Text::LinkNotSentVeloraOffline),
                      TextCatalogue::text(s.LanguageId, Text::MsgCommunicationFailureCaption));
    return false;
}

int CommandSender::waitLimit() const {
    const LinkSupervision& run = engine_.state().run();
    if (!commands::isReadAll(run.LastCode))
        return 1;
    // About two seconds for the one long reply of a read-all.
    return static_cast<int>(roundHalfEven(2000.0 / engine_.pollIntervalMs()));
}

void CommandSender::answeredAfterResends() {
    const LinkSupervision& run = engine_.state().run();
    // The last frame's answer is due about one re-send interval after the one taken; one more
    // interval of margin.
    holdTicks_ = (run.RetryCount + 1) * (waitLimit() + 1);
    lateAnswersOf_ = run.LastCommand;
}

void CommandSender::countTick() {
    if (holdTicks_ == 0 || --holdTicks_ > 0 || heldFrame_.isEmpty())
        return;
    const QString frame = heldFrame_;
    heldFrame_.clear();
    engine_.supervision().TickCount = 0;
    engine_.SendByteData(frame);
}

bool CommandSender::supervise() {
    LinkSupervision& run = engine_.supervision();
    if (frameHeld())
        return false;  // nothing is on the line to wait for
    if (run.Searching && run.TickCount >= 1 && portSearchStep_) {
        portSearchStep_();
        return true;
    }
    if (run.RetryCount >= MaxResends) {
        communicationFailure();
    } else if (run.TickCount < waitLimit()) {
        ++run.TickCount;
    } else {
        ++run.RetryCount;
        run.TickCount = 0;
        engine_.SendByteData(run.LastCommand);
    }
    return false;
}

void CommandSender::communicationFailure() {
    LinkState& s = engine_.state();
    LinkSupervision& run = engine_.supervision();
    engine_.pauseTimer1();
    if (run.BusyDialogShown)
        engine_.HideDialog();
    const bool retry =
        engine_.askRetry(linkfailure::noAnswer(engine_),
                         TextCatalogue::text(s.LanguageId, Text::MsgCommunicationFailureCaption));
    if (retry) {
        run.RetryCount = 0;
        run.TickCount = 0;
        if (run.ParamTransferActive || run.PointTransferActive || run.ComTableTransferActive) {
            engine_.ShowBusyDialog();
        }
        engine_.SendByteData(run.LastCommand);
    } else {
        run.AwaitingReply = false;
        run.ParamTransferActive = false;
        run.PointTransferActive = false;
        run.ComTableTransferActive = false;
        engine_.resetWaveDisplay();
        engine_.EnableControls(true);
        if (engine_.transport())
            engine_.transport()->setTransmitEnable(false);
    }
    engine_.resumeTimer1();
}

bool CommandSender::admits(const QString& text) {
    const wire::TextCheck check = wire::checkCommandText(text);
    if (check == wire::TextCheck::Ok)
        return true;
    refuse(text, check);
    return false;
}

void CommandSender::refuse(const QString& text, wire::TextCheck why) {
    // A frame holds at most 30 printable characters; cutting the text would send another
    // command than the user wrote, so it is not sent at all.
    const LinkState& s = engine_.state();
    QString shown;
    for (const QChar c : text) {
        // Control characters would vanish in the message; their printable symbols show where.
        if (c.unicode() < 0x20)
            shown += QChar(0x2400 + c.unicode());
        else if (c.unicode() == 0x7F)
            shown += QChar(0x2421);
        else
            shown += c;
    }
    const QString detail =
        QStringLiteral("%1\n(%2 / %3)").arg(shown).arg(text.size()).arg(wire::MaxCommandLength);
    const Text advice = why == wire::TextCheck::TooLong ? Text::LinkCommandHoldsMost30
                                                        : Text::LinkTextHoldsCharacterCannot;
    engine_.showError(TextCatalogue::text(s.LanguageId, Text::LinkIllegalCommandString) +
                          QLatin1Char('\n') + detail + QStringLiteral("\n\n") +
                          TextCatalogue::text(s.LanguageId, advice),
                      TextCatalogue::text(s.LanguageId, Text::MsgCommErrorCaption));
}

}  // namespace velora
