#include "core/link/LinkEngine.h"

#include "core/link/FrameTrace.h"
#include "core/link/LinkUi.h"
#include "core/link/PortNaming.h"
#include "core/link/WireFormat.h"
#include "core/shared/LinkState.h"
#include "core/shared/Rounding.h"
#include "core/shared/TextCatalogue.h"

namespace velora {

LinkEngine::LinkEngine(LinkState& state, LinkUi& ui, Ticks ticks, QObject* parent)
    : QObject(parent),
      state_(state),
      run_(state.run_),
      ui_(ui),
      ticks_(ticks),
      sender_(*this),
      dispatcher_(*this),
      polling_(*this) {
    timer2_.setSingleShot(true);
    connect(&timer1_, &QTimer::timeout, this, &LinkEngine::tick);
    connect(&timer2_, &QTimer::timeout, this, &LinkEngine::endOfTransmission);
}

LinkEngine::~LinkEngine() = default;

void LinkEngine::setTransport(std::unique_ptr<Transport> transport) {
    if (transport_)
        transport_->close();
    transport_ = std::move(transport);
    if (!transport_)
        return;
    connect(transport_.get(), &Transport::replyReceived, this, &LinkEngine::DispatchReply);
    connect(transport_.get(), &Transport::consoleNote, this,
            [this](const QString& text) { ui_.setComText(1, text); });
    connect(transport_.get(), &Transport::portLost, this, &LinkEngine::portLost);
}

QString LinkEngine::device() const {
    if (!deviceOverride_.isEmpty())
        return deviceOverride_;
    const BackEnd backEnd = state_.UsbMode ? BackEnd::UsbSerial : BackEnd::Rs232;
    return deviceForPort(backEnd, state_.PortNumber);
}

void LinkEngine::start(int pollIntervalMs) {
    setPollIntervalMs(pollIntervalMs);
    timer1Enabled_ = true;
    applyTimer1();
    if (state_.Online) {
        const OpenResult opened = reopen();
        if (!opened.ok) {
            // The USB adapter fails silently; either way the main window offers the settings.
            if (transport_ && transport_->backEnd() == BackEnd::Rs232) {
                showError(TextCatalogue::text(state_.LanguageId, Text::MsgCannotOpenPort) +
                              QLatin1Char('\n') + opened.device + QStringLiteral(": ") +
                              opened.reason,
                          TextCatalogue::text(state_.LanguageId, Text::MsgCannotOpenPortCaption));
            }
            state_.PortNumber = 1;
            return;
        }
        if (state_.AxisNumber != wire::AllAxes)
            sendPoll();
    } else {
        DisableCommControls();
    }
    // The first reply enables the controls again.
    if (state_.RealTimeMonitor)
        DisableCommControls();
}

OpenResult LinkEngine::reopen() {
    if (!transport_) {
        lastOpen_ = {false, device(), QStringLiteral("no serial back-end")};
    } else {
        transport_->close();
        const int baud = state_.baudRateValue() > 0 ? state_.baudRateValue() : 9600;
        lastOpen_ = transport_->open(device(), baud);
        if (!lastOpen_.ok && openAdvice_)
            lastOpen_.advise(openAdvice_(lastOpen_));
    }
    run_.PortOpen = lastOpen_.ok;
    return lastOpen_;
}

QString LinkEngine::axisPrefix() const {
    return wire::axisCharacter(state_.AxisNumber);
}

void LinkEngine::sendPoll() {
    SendCommand(axisPrefix() + QStringLiteral("ma"));
}

void LinkEngine::DispatchReply(const QString& text) {
    if (trace_)
        trace_->recordReceived(text, !dispatcher_.answersLastCommand(text));
    dispatcher_.DispatchReply(text);
}

void LinkEngine::SendByteData(const QString& text) {
    if (trace_)
        trace_->recordSent(text);
    const bool sent = transport_ && transport_->send(wire::buildFrame(text));
    if (!sent) {
        // Silent: an outstanding supervised command is re-sent by the reply supervision.
        if (transport_ && transport_->backEnd() == BackEnd::UsbSerial) {
            resetWaveDisplay();
            transport_->setTransmitEnable(false);
        }
        return;
    }
    const int baud = state_.baudRateValue() > 0 ? state_.baudRateValue() : 9600;
    // Ten bit times per character: the text, both frame bytes and one spare.
    run_.TransmitTimeMs = static_cast<int>(roundHalfEven((text.size() + 3) * 10000.0 / baud));
    timer2IntervalMs_ = run_.TransmitTimeMs + 10;
    timer2Armed_ = true;
    if (ticks_ == Ticks::Timers)
        timer2_.start(timer2IntervalMs_);
}

void LinkEngine::endOfTransmission() {
    timer2_.stop();
    timer2Armed_ = false;
    if (transport_)
        transport_->transmissionDone();
    if (wire::isBroadcast(run_.LastCommand, state_.AxisNumber)) {
        showNotice(TextCatalogue::text(state_.LanguageId, Text::MsgAllAxisCommandSent) +
                       QLatin1Char('\n') + TextCatalogue::text(state_.LanguageId, Text::MsgNoReply),
                   TextCatalogue::text(state_.LanguageId, Text::MsgCommandSent));
    }
}

void LinkEngine::EnableControls(bool enable) {
    ui_.EnableControls(enable);
}

void LinkEngine::DisableTransferButtons() {
    run_.Wave = WaveState::Idle;
    ui_.DisableTransferButtons();
}

void LinkEngine::DisableCommControls() {
    ui_.disableConsole();
    DisableTransferButtons();
}

void LinkEngine::ShowBusyDialog() {
    // Nothing could close it: no reply comes over a link that is down.
    if (!state_.Online || !run_.PortOpen)
        return;
    run_.BusyDialogShown = true;
    ui_.showBusyDialog();
}

void LinkEngine::HideDialog() {
    run_.BusyDialogShown = false;
    ui_.hideBusyDialog();
}

void LinkEngine::resetWaveDisplay() {
    run_.Wave = WaveState::Idle;
    ui_.setWaveReadingShown(false);
    ui_.enableWavePanel();
}

void LinkEngine::beginSearch() {
    run_.Searching = true;
}

void LinkEngine::restartSupervision() {
    run_.RetryCount = 0;
    run_.TickCount = 0;
}

void LinkEngine::endSearch() {
    run_.Searching = false;
    run_.AwaitingReply = false;
}

void LinkEngine::markPortClosed() {
    run_.PortOpen = false;
}

void LinkEngine::setMonitorRunning(bool running) {
    run_.MonitorRunning = running;
}

void LinkEngine::queueCommand(const QString& text) {
    run_.QueuedCommand = text;
}

void LinkEngine::dropQueuedCommand() {
    run_.QueuedCommand.clear();
}

void LinkEngine::abandonCommands() {
    run_.AwaitingReply = false;
    run_.QueuedCommand.clear();
}

void LinkEngine::beginTransfer(Transfer kind) {
    transferFlag(kind) = true;
}

void LinkEngine::endTransfer(Transfer kind) {
    transferFlag(kind) = false;
}

void LinkEngine::endAllTransfers() {
    run_.ParamTransferActive = false;
    run_.PointTransferActive = false;
    run_.ComTableTransferActive = false;
}

void LinkEngine::setWaveState(WaveState state) {
    run_.Wave = state;
}

bool& LinkEngine::transferFlag(Transfer kind) {
    switch (kind) {
        case Transfer::Params:
            return run_.ParamTransferActive;
        case Transfer::Points:
            return run_.PointTransferActive;
        case Transfer::Commands:
            break;
    }
    return run_.ComTableTransferActive;
}

void LinkEngine::setPollIntervalMs(int ms) {
    pollIntervalMs_ = ms;
    if (ticks_ == Ticks::Timers)
        timer1_.setInterval(ms);
}

void LinkEngine::pauseTimer1() {
    ++timer1Pauses_;
    applyTimer1();
}

void LinkEngine::resumeTimer1() {
    if (timer1Pauses_ > 0)
        --timer1Pauses_;
    applyTimer1();
}

void LinkEngine::applyTimer1() {
    timer1Active_ = timer1Enabled_ && timer1Pauses_ == 0;
    if (ticks_ == Ticks::Manual)
        return;
    if (!timer1Active_) {
        timer1_.stop();
    } else if (!timer1_.isActive()) {
        timer1_.start(pollIntervalMs_);
    }
}

void LinkEngine::showError(const QString& text, const QString& caption) {
    pauseTimer1();
    ui_.showError(text, caption);
    resumeTimer1();
}

bool LinkEngine::askRetry(const QString& text, const QString& caption) {
    pauseTimer1();
    const bool retry = ui_.askRetry(text, caption);
    resumeTimer1();
    return retry;
}

void LinkEngine::showNotice(const QString& text, const QString& caption) {
    pauseTimer1();
    ui_.showNotice(text, caption);
    resumeTimer1();
}

void LinkEngine::showWarning(const QString& text, const QString& caption) {
    pauseTimer1();
    ui_.showWarning(text, caption);
    resumeTimer1();
}

}  // namespace velora
