#pragma once

#include "sim/Drive.h"
#include "sim/FaultPlan.h"
#include "sim/LineSettings.h"

#include <QByteArray>
#include <QList>

#include <memory>
#include <vector>

namespace velora::sim {

// A reply ready for the line: frame contents, the rate it goes out at, and how long after
// the command (or now, for replies the drive sends by itself) it starts.
struct OutgoingReply {
    QByteArray text;
    int baud = 9600;
    int delayMs = 0;
};

// The drives sharing one line: routes each command to the drives it addresses and that can
// hear it, applies the fault plan, and keeps time for all drives. No I/O happens here.
class DriveBus {
public:
    DriveBus(const QList<int>& axes, int version);
    Q_DISABLE_COPY_MOVE(DriveBus)

    // One command text from the line.
    [[nodiscard]] QList<OutgoingReply> receive(const QString& text, const LineSettings& line);
    // Time passes; what the drives send by themselves in it.
    [[nodiscard]] QList<OutgoingReply> advance(int ms);

    // Without the reply wait (pacing is the writer's business).
    void setFast(bool fast) { fast_ = fast; }
    [[nodiscard]] FaultPlan& faults() { return faults_; }
    [[nodiscard]] qint64 elapsedMs() const { return elapsedMs_; }
    [[nodiscard]] int driveCount() const { return static_cast<int>(drives_.size()); }
    [[nodiscard]] Drive& driveAt(int index) { return *drives_.at(static_cast<std::size_t>(index)); }
    // The drive answering to axis (its axis in effect), or nullptr.
    [[nodiscard]] Drive* drive(int axis);

private:
    void deliver(const QString& code, QByteArray text, int baud, int delayMs,
                 QList<OutgoingReply>& out);

    std::vector<std::unique_ptr<Drive>> drives_;
    FaultPlan faults_;
    bool fast_ = false;
    qint64 elapsedMs_ = 0;
};

}  // namespace velora::sim
