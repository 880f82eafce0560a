#pragma once

#include "core/link/ReplyDispatcher.h"
#include "core/monitor/MonitorSnapshot.h"
#include "core/monitor/ServoStatusView.h"

#include <QDateTime>
#include <QObject>
#include <QString>

#include <optional>

namespace velora {

class LinkEngine;

// The real-time monitor: decodes every monitor reply ("ma"), tells the monitor windows and the
// status bar what to show, and keeps the chain going by choosing the one command that follows
// each reply. Registers itself as the engine's "ma" handler; must not outlive the engine.
class RealTimeMonitor : public QObject {
    Q_OBJECT
public:
    // The first version whose drives report the torque peak and know "QP" (1.10 x 100).
    static constexpr int TorquePeakVersion = 110;
    // An identification that got no answer (its failure question cancelled) is asked again on
    // a later monitor reply, but not more often than this.
    static constexpr qint64 IdentificationRetrySecs = 60;

    explicit RealTimeMonitor(LinkEngine& engine, QObject* parent = nullptr);
    ~RealTimeMonitor() override;
    Q_DISABLE_COPY_MOVE(RealTimeMonitor)

    // Handles one monitor reply (axis character, "ma", payload).
    [[nodiscard]] ReplyStatus OnMaReply(const QString& reply);

    // The monitor switch: on sends a poll at once, off lets the chain end at the next reply.
    void setMonitorSwitch(bool on);
    // Switches the monitor on without sending and without showing it on the switch.
    void setRealTimeMonitorOnly();
    // Queues the torque peak reset for the next turn of the chain or the polling slot; never
    // sent at once.
    void resetTorquePeak();

    // The last reply decoded, if any has come.
    [[nodiscard]] const std::optional<MonitorSnapshot>& lastSnapshot() const { return last_; }

signals:
    // The numerical monitor's values. A snapshot without a torque peak leaves that label as it is.
    void snapshot(const velora::MonitorSnapshot& values);
    // The I/O word of the reply, for the I/O status window.
    void ShowIoState(quint16 word);
    // Status captions, the RUN and ALARM lamps and the SVON label.
    void ShowServoStatus(const velora::ServoStatusView& status);
    // The switch's buttons: the "on" button is chosen when on, the "off" button otherwise.
    void monitorSwitchShown(bool on);

private:
    void sendNext(const MonitorSnapshot& values);
    [[nodiscard]] bool identificationDue() const;

    LinkEngine& engine_;
    // When this monitor last asked for the identification (the engine's clock).
    QDateTime identificationAsked_;
    std::optional<MonitorSnapshot> last_;
};

}  // namespace velora
