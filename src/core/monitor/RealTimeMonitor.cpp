#include "core/monitor/RealTimeMonitor.h"

#include "core/link/LinkEngine.h"
#include "core/shared/LinkState.h"

namespace velora {

namespace {
const QString kCode = QStringLiteral("ma");
}  // namespace

RealTimeMonitor::RealTimeMonitor(LinkEngine& engine, QObject* parent)
    : QObject(parent), engine_(engine) {
    engine_.dispatcher().registerHandler(kCode,
                                         [this](const QString& text) { return OnMaReply(text); });
}

RealTimeMonitor::~RealTimeMonitor() {
    engine_.dispatcher().unregisterHandler(kCode);
}

ReplyStatus RealTimeMonitor::OnMaReply(const QString& reply) {
    LinkState& s = engine_.state();
    // Older drives end their reply before the torque peak.
    auto decoded = MonitorSnapshot::decode(reply, s.DriverVersion >= TorquePeakVersion);
    if (!decoded)
        return ReplyStatus::Malformed;
    last_ = std::move(decoded);
    const MonitorSnapshot& values = *last_;

    emit snapshot(values);
    emit ShowIoState(values.IoWord);
    // Stored before the windows hear of it, so that whoever reads the shared state sees it.
    s.ServoStatus = values.StatusWord;
    emit ShowServoStatus(ServoStatusView::fromWord(values.StatusWord));

    sendNext(values);
    engine_.setMonitorRunning(true);
    return ReplyStatus::Handled;
}

void RealTimeMonitor::sendNext(const MonitorSnapshot& values) {
    LinkState& s = engine_.state();
    const QString axis = engine_.axisPrefix();
    if ((s.RealTimeMonitor && !s.run().MonitorRunning) || identificationDue()) {
        // A new run: learn which features the drive has before anything else.
        identificationAsked_ = engine_.now();
        engine_.SendCommand(axis + QStringLiteral("PR77"));
    } else if (values.AlarmCode != 0) {
        // The alarm data goes first; a queued command waits for a later turn.
        s.AlarmSeen = true;
        engine_.SendCommand(axis + QStringLiteral("AD"));
    } else if (!s.run().QueuedCommand.isEmpty()) {
        const QString queued = s.run().QueuedCommand;
        engine_.dropQueuedCommand();
        engine_.SendCommand(queued);
    } else if (s.RealTimeMonitor) {
        engine_.sendPoll();
    }
}

bool RealTimeMonitor::identificationDue() const {
    // Without the version the torque peak, its reset and RAM-only writes stay unavailable.
    const LinkState& s = engine_.state();
    return s.RealTimeMonitor && s.DriverVersion == 0 && identificationAsked_.isValid() &&
           identificationAsked_.secsTo(engine_.now()) >= IdentificationRetrySecs;
}

void RealTimeMonitor::setMonitorSwitch(bool on) {
    engine_.state().RealTimeMonitor = on;
    emit monitorSwitchShown(on);
    if (on)
        engine_.sendPoll();
}

void RealTimeMonitor::setRealTimeMonitorOnly() {
    engine_.state().RealTimeMonitor = true;
}

void RealTimeMonitor::resetTorquePeak() {
    engine_.queueCommand(engine_.axisPrefix() + QStringLiteral("QP"));
}

}  // namespace velora
