#pragma once

#include "sim/DriveMemory.h"
#include "sim/MotionModel.h"

namespace velora::sim {

// The drive running its point table by itself: each point is a positioning (absolute or
// relative) with the velocity and ATC of the command table entries it selects, then a wait,
// then the next point as its next-start code says: 0 ends the run, 1 and 2 go on with the
// following point, 3 goes back to the start point.
class PointTableRun {
public:
    void start(int point);
    void stop() { running_ = false; }

    // One millisecond of the run; the run moves the motor through motion.
    void step(MotionModel& motion, const DriveTables& tables);

    [[nodiscard]] bool running() const { return running_; }
    [[nodiscard]] int currentPoint() const { return current_; }
    // The point that follows the current one, or the current one when the run ends there.
    [[nodiscard]] int nextPoint(const DriveTables& tables) const;
    // Points with a position/torque code 1-7 push with that torque No. as their limit.
    [[nodiscard]] int torqueNo(const DriveTables& tables) const;

private:
    enum class Phase { Begin, Moving, Waiting };

    void beginPoint(MotionModel& motion, const DriveTables& tables);

    bool running_ = false;
    Phase phase_ = Phase::Begin;
    int start_ = 0;
    int current_ = 0;
    int waitLeft_ = 0;
};

}  // namespace velora::sim
