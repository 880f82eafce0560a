#include "sim/MotionModel.h"

#include <algorithm>
#include <cmath>

namespace velora::sim {

namespace {

constexpr double RpmPerPulsePerMs = 60000.0 / MotionModel::PulsesPerRevolution;

double approach(double value, double target, double maxChange) {
    if (value < target)
        return std::min(target, value + maxChange);
    return std::max(target, value - maxChange);
}

double rateFor(double rpm, double accelMs) {
    return std::max(std::abs(rpm), 1.0) / std::max(accelMs, 1.0);
}

}  // namespace

void MotionModel::runVelocity(double rpm, double accelMs) {
    velocityLimited_ = std::abs(rpm) >= MaxRpm;
    targetVelocity_ = std::clamp(rpm, -MaxRpm, MaxRpm);
    acceleration_ = rateFor(targetVelocity_, accelMs);
    stopping_ = false;
    profile_ = Profile::Velocity;
}

void MotionModel::moveTo(double target, double rpm, double accelMs) {
    velocityLimited_ = std::abs(rpm) >= MaxRpm;
    profileSpeed_ = std::min(std::abs(rpm), MaxRpm);
    acceleration_ = rateFor(profileSpeed_, accelMs);
    targetPosition_ = target;
    stopping_ = false;
    profile_ = Profile::Position;
}

void MotionModel::decelerate() {
    if (profile_ == Profile::Idle)
        return;
    targetVelocity_ = 0.0;
    stopping_ = true;
    profile_ = Profile::Velocity;
}

void MotionModel::stopNow() {
    profile_ = Profile::Idle;
    commandVelocity_ = 0.0;
    stopping_ = false;
    velocityLimited_ = false;
}

void MotionModel::release() {
    stopNow();
    commandPosition_ = actualPosition_;
}

void MotionModel::shiftCounter(double delta) {
    commandPosition_ += delta;
    actualPosition_ += delta;
    targetPosition_ += delta;
}

double MotionModel::restPulses() const {
    return profile_ == Profile::Position ? targetPosition_ - commandPosition_ : 0.0;
}

bool MotionModel::atPlusLimit() const {
    return limits_.plus > limits_.minus && actualPosition_ >= limits_.plus;
}

bool MotionModel::atMinusLimit() const {
    return limits_.plus > limits_.minus && actualPosition_ <= limits_.minus;
}

void MotionModel::step(bool servoOn) {
    if (!servoOn) {
        release();
        followShaft(false);
        return;
    }
    if (profile_ == Profile::Velocity)
        stepVelocity();
    if (profile_ == Profile::Position)
        stepPosition();
    applyLimits();
    followShaft(true);
}

void MotionModel::stepVelocity() {
    commandVelocity_ = approach(commandVelocity_, targetVelocity_, acceleration_);
    commandPosition_ += commandVelocity_ / RpmPerPulsePerMs;
    if (stopping_ && commandVelocity_ == 0.0) {
        profile_ = Profile::Idle;
        stopping_ = false;
        velocityLimited_ = false;
    }
}

void MotionModel::stepPosition() {
    const double rest = targetPosition_ - commandPosition_;
    const double direction = rest >= 0.0 ? 1.0 : -1.0;
    // The fastest speed from which the rest can still be braked at the profile's rate.
    const double braking = std::sqrt(2.0 * acceleration_ / RpmPerPulsePerMs * std::abs(rest));
    const double desired = direction * std::min(profileSpeed_, braking * RpmPerPulsePerMs);
    const bool slowingSameWay =
        commandVelocity_ * desired > 0.0 && std::abs(desired) < std::abs(commandVelocity_);
    commandVelocity_ =
        slowingSameWay ? desired : approach(commandVelocity_, desired, acceleration_);
    const double move = commandVelocity_ / RpmPerPulsePerMs;
    if (std::abs(rest) < 0.5 || (move * rest > 0.0 && std::abs(move) >= std::abs(rest))) {
        commandPosition_ = targetPosition_;
        commandVelocity_ = 0.0;
        profile_ = Profile::Idle;
        velocityLimited_ = false;
        return;
    }
    commandPosition_ += move;
}

void MotionModel::applyLimits() {
    if (limits_.plus <= limits_.minus)
        return;
    const bool beyondPlus = commandPosition_ > limits_.plus && commandVelocity_ >= 0.0;
    const bool beyondMinus = commandPosition_ < limits_.minus && commandVelocity_ <= 0.0;
    if (!beyondPlus && !beyondMinus)
        return;
    commandPosition_ = beyondPlus ? limits_.plus : limits_.minus;
    stopNow();
}

void MotionModel::followShaft(bool servoOn) {
    const double previousPosition = actualPosition_;
    const double previousVelocity = actualVelocity_;
    if (servoOn) {
        // The position loop as a first-order lag whose time constant falls with the gain.
        const double alpha = std::clamp(gain_ / 1000.0, 0.01, 1.0);
        actualPosition_ += (commandPosition_ - actualPosition_) * alpha;
        // Settled: let the readout land exactly on the command.
        if (std::abs(commandPosition_ - actualPosition_) < 1e-3)
            actualPosition_ = commandPosition_;
    }
    actualVelocity_ = (actualPosition_ - previousPosition) * RpmPerPulsePerMs;
    if (!servoOn) {
        torque_ = 0;
        torqueLimited_ = false;
        return;
    }
    // Inertia plus viscous and dry friction, in % x 100.
    const double acceleration = actualVelocity_ - previousVelocity;
    double wanted = 300.0 * acceleration + 0.5 * actualVelocity_;
    if (std::abs(actualVelocity_) > 0.5)
        wanted += actualVelocity_ > 0.0 ? 300.0 : -300.0;
    torqueLimited_ = std::abs(wanted) > torqueLimit_;
    torque_ = static_cast<int>(std::lround(
        std::clamp(wanted, -static_cast<double>(torqueLimit_), static_cast<double>(torqueLimit_))));
}

}  // namespace velora::sim
