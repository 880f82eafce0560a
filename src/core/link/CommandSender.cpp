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
    if (!reachable() || !admits(text))
        return false;
    const QString code = wire::codeOf(text);
    const bool broadcast = wire::isBroadcast(text, s.AxisNumber);

    if (s.AxisNumber == wire::AllAxes || broadcast || !commands::isSupervised(code)) {
        s.AwaitingReply = false;
    } else {
        // While an alarm is pending the drive may not answer; nothing is re-sent then.
        s.AwaitingReply = !s.AlarmSeen;
    }
    s.LastCode = code;
    s.RetryCount = 0;
    s.TickCount = 0;
    s.LastCommand = text;
    ++sequence_;
    heldFrame_.clear();
    // The frame leaves before the windows are touched: locking every control of every window
    // takes longer than a short frame on the line. No reply can be handled before this returns.
    if (s.AwaitingReply && holdTicks_ > 0 && wire::answers(text, lateAnswersOf_) &&
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
    } else if (s.EchoPolls) {
        engine_.ui().setComText(0, text);
    }
    return true;
}

bool CommandSender::PostCommand(const QString& text) {
    LinkState& s = engine_.state();
    if (!reachable())
        return false;
    s.QueuedCommand = text;
    if (s.RealTimeMonitor)
        return true;  // leaves with the next slot of the monitor chain
    const QString now = s.QueuedCommand;
    s.QueuedCommand.clear();
    return SendCommand(now);
}

bool CommandSender::reachable() const {
    const LinkState& s = engine_.state();
    if (s.Online && s.PortOpen)
        return true;
    engine_.showError(TextCatalogue::text(s.LanguageId, Text::LinkNotSentVeloraOffline),
                      TextCatalogue::text(s.LanguageId, Text::MsgCommunicationFailureCaption));
    return false;
}

int CommandSender::waitLimit() const {
    const LinkState& s = engine_.state();
    if (!commands::isReadAll(s.LastCode))
        return 1;
    // About two seconds for the one long reply of a read-all.
    return static_cast<int>(roundHalfEven(2000.0 / engine_.pollIntervalMs()));
}

void CommandSender::answeredAfterResends() {
    const LinkState& s = engine_.state();
    // The last frame's answer is due about one re-send interval after the one taken; one more
    // interval of margin.
    holdTicks_ = (s.RetryCount + 1) * (waitLimit() + 1);
    lateAnswersOf_ = s.LastCommand;
}

void CommandSender::countTick() {
    if (holdTicks_ == 0 || --holdTicks_ > 0 || heldFrame_.isEmpty())
        return;
    const QString frame = heldFrame_;
    heldFrame_.clear();
    engine_.state().TickCount = 0;
    engine_.SendByteData(frame);
}

bool CommandSender::supervise() {
    LinkState& s = engine_.state();
    if (frameHeld())
        return false;  // nothing is on the line to wait for
    if (s.Searching && s.TickCount >= 1 && portSearchStep_) {
        portSearchStep_();
        return true;
    }
    if (s.RetryCount >= MaxResends) {
        communicationFailure();
    } else if (s.TickCount < waitLimit()) {
        ++s.TickCount;
    } else {
        ++s.RetryCount;
        s.TickCount = 0;
        engine_.SendByteData(s.LastCommand);
    }
    return false;
}

void CommandSender::communicationFailure() {
    LinkState& s = engine_.state();
    engine_.pauseTimer1();
    if (s.BusyDialogShown)
        engine_.HideDialog();
    const bool retry =
        engine_.askRetry(linkfailure::noAnswer(engine_),
                         TextCatalogue::text(s.LanguageId, Text::MsgCommunicationFailureCaption));
    if (retry) {
        s.RetryCount = 0;
        s.TickCount = 0;
        if (s.ParamTransferActive || s.PointTransferActive || s.ComTableTransferActive) {
            engine_.ShowBusyDialog();
        }
        engine_.SendByteData(s.LastCommand);
    } else {
        s.AwaitingReply = false;
        s.ParamTransferActive = false;
        s.PointTransferActive = false;
        s.ComTableTransferActive = false;
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
