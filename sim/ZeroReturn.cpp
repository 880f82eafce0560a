#include "sim/ZeroReturn.h"

#include <cmath>

namespace velora::sim {

bool ZeroReturn::onDog(double machinePosition) {
    const double nearest = std::round(machinePosition / DogPitch) * DogPitch;
    return std::abs(machinePosition - nearest) <= DogHalfWidth;
}

void ZeroReturn::start(const Settings& settings, MotionModel& motion) {
    settings_ = settings;
    const double sign = settings_.negative ? -1.0 : 1.0;
    // Started on the dog, the first step already switches to the slow phase.
    motion.runVelocity(sign * settings_.highRpm, settings_.accelMs);
    phase_ = Phase::Fast;
}

void ZeroReturn::abort(MotionModel& motion) {
    if (phase_ == Phase::Idle)
        return;
    phase_ = Phase::Idle;
    motion.decelerate();
}

void ZeroReturn::enterSlow(MotionModel& motion, double machinePosition) {
    const double sign = settings_.negative ? -1.0 : 1.0;
    motion.runVelocity(sign * settings_.lowRpm, settings_.accelMs);
    sensorEdge_ = machinePosition;
    previousMachine_ = machinePosition;
    phase_ = Phase::Slow;
}

bool ZeroReturn::step(MotionModel& motion, double machinePosition, bool sensor) {
    switch (phase_) {
        case Phase::Idle:
            return false;
        case Phase::Fast:
            if (sensor)
                enterSlow(motion, machinePosition);
            return false;
        case Phase::Slow: {
            const double rev = MotionModel::PulsesPerRevolution;
            const bool crossed =
                std::floor(previousMachine_ / rev) != std::floor(machinePosition / rev);
            previousMachine_ = machinePosition;
            if (!crossed)
                return false;
            decZ_ = std::abs(machinePosition - sensorEdge_);
            const double sign = settings_.negative ? -1.0 : 1.0;
            motion.moveTo(motion.commandPosition() + sign * settings_.lastRun, settings_.lowRpm,
                          settings_.accelMs);
            phase_ = Phase::LastRun;
            return false;
        }
        case Phase::LastRun:
            if (motion.busy())
                return false;
            phase_ = Phase::Idle;
            return true;
    }
    return false;
}

}  // namespace velora::sim
