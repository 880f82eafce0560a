#include "sim/PointTableRun.h"

namespace velora::sim {

void PointTableRun::start(int point) {
    running_ = true;
    start_ = point;
    current_ = point;
    phase_ = Phase::Begin;
}

int PointTableRun::nextPoint(const DriveTables& tables) const {
    const PointEntry& p = tables.points[static_cast<std::size_t>(current_)];
    switch (p.nextStart()) {
        case 1:
        case 2:
            return current_ + 1 < PointCount ? current_ + 1 : current_;
        case 3:
            return start_;
        default:
            return current_;
    }
}

int PointTableRun::torqueNo(const DriveTables& tables) const {
    if (!running_)
        return -1;
    const int code = tables.points[static_cast<std::size_t>(current_)].posTor();
    return code == 0 ? -1 : code;
}

void PointTableRun::beginPoint(MotionModel& motion, const DriveTables& tables) {
    const PointEntry& p = tables.points[static_cast<std::size_t>(current_)];
    const double rpm = tables.velocity[static_cast<std::size_t>(p.velocity)];
    const double atc = tables.atc[static_cast<std::size_t>(p.accConst)];
    const double target =
        p.incremental() ? motion.commandPosition() + p.position : static_cast<double>(p.position);
    // A point with velocity 0 cannot move; it counts as arrived.
    if (rpm > 0.0)
        motion.moveTo(target, rpm, atc);
    phase_ = Phase::Moving;
}

void PointTableRun::step(MotionModel& motion, const DriveTables& tables) {
    if (!running_)
        return;
    switch (phase_) {
        case Phase::Begin:
            beginPoint(motion, tables);
            return;
        case Phase::Moving:
            if (motion.busy())
                return;
            waitLeft_ = tables.points[static_cast<std::size_t>(current_)].waitTime;
            phase_ = Phase::Waiting;
            [[fallthrough]];
        case Phase::Waiting:
            if (waitLeft_ > 0) {
                --waitLeft_;
                return;
            }
            break;
    }
    const int next = nextPoint(tables);
    const bool ends = tables.points[static_cast<std::size_t>(current_)].nextStart() == 0 ||
                      (next == current_ && current_ == PointCount - 1);
    if (ends) {
        running_ = false;
        return;
    }
    current_ = next;
    beginPoint(motion, tables);
}

}  // namespace velora::sim
