#pragma once

#include "sim/DriveBus.h"
#include "sim/FrameReader.h"
#include "sim/PacedWriter.h"
#include "sim/PtyPort.h"
#include "sim/SimOptions.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

namespace velora::sim {

// A line of simulated drives, ready for a host program: construct with options, open(), and
// point the serial port at devicePath(). Runs on the thread it lives in, driven by its timers.
class SimulatedLine : public QObject {
    Q_OBJECT
public:
    explicit SimulatedLine(const SimOptions& options, QObject* parent = nullptr);
    Q_DISABLE_COPY_MOVE(SimulatedLine)

    // Opens the pseudo-terminal (or the device) and starts the drives' clock.
    [[nodiscard]] bool open();
    void close();
    [[nodiscard]] QString errorString() const { return port_.errorString(); }
    // The device the PC opens: the pseudo-terminal's slave, or the given device.
    [[nodiscard]] QString devicePath() const { return port_.devicePath(); }

    [[nodiscard]] DriveBus& bus() { return bus_; }
    [[nodiscard]] FaultPlan& faults() { return bus_.faults(); }
    // How late the last reply's final character left, against the line's timing.
    [[nodiscard]] qint64 lastReplyLateNs() const { return writer_.lastFrameLateNs(); }
    // Cable pulled (true) or plugged back in (false).
    void setCablePulled(bool pulled) { bus_.faults().cablePulled = pulled; }

signals:
    void commandReceived(const QString& text);
    void replySent(const QString& text);

private:
    void onBytes(const QByteArray& bytes);
    void onTick();
    // requestCharacters: the frame the replies answer, which the line carries before the drive
    // hears it (0 for what the drives send by themselves).
    void send(const QList<OutgoingReply>& replies, int requestCharacters);

    DriveBus bus_;
    PtyPort port_;
    PacedWriter writer_;
    FrameReader reader_;
    QTimer tick_;
    QElapsedTimer clock_;
    qint64 simulatedMs_ = 0;
    QString devicePathOption_;
    int deviceBaud_ = 0;
};

}  // namespace velora::sim
