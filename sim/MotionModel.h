#pragma once

#include <QtGlobal>

namespace velora::sim {

// The motor and its command generator, integrated in 1 ms steps. Positions are in pulses of
// the position counter, velocities in rpm, torque in % x 100. The motor turns 10000 pulses per
// revolution, so 1 rpm is 1/6 pulse per ms.
class MotionModel {
public:
    static constexpr double PulsesPerRevolution = 10000.0;
    static constexpr double MaxRpm = 4500.0;

    enum class Profile { Idle, Velocity, Position };

    // Software travel limits; inactive while plus <= minus.
    struct Limits {
        double plus = 0.0;
        double minus = 0.0;
    };

    // Velocity drive towards rpm, reaching it from standstill in accelMs.
    void runVelocity(double rpm, double accelMs);
    // Positioning to target at speed rpm (sign ignored); accelMs to reach rpm.
    void moveTo(double target, double rpm, double accelMs);
    // Ramps down at the present rate and ends idle.
    void decelerate();
    // Stops the command at once (emergency stop, alarm, servo off).
    void stopNow();
    // Servo off: the command follows the shaft, so no deviation builds up.
    void release();
    // Redefines the counter: the shaft stays, every position reads delta more.
    void shiftCounter(double delta);
    void setGain(int positionGain) { gain_ = positionGain; }
    void setTorqueLimit(int limit) { torqueLimit_ = limit; }
    void setLimits(const Limits& limits) { limits_ = limits; }

    // One millisecond. While the servo is off the shaft keeps its place.
    void step(bool servoOn);

    [[nodiscard]] Profile profile() const { return profile_; }
    [[nodiscard]] bool busy() const { return profile_ != Profile::Idle; }
    [[nodiscard]] double commandPosition() const { return commandPosition_; }
    [[nodiscard]] double actualPosition() const { return actualPosition_; }
    [[nodiscard]] double commandVelocity() const { return commandVelocity_; }
    [[nodiscard]] double actualVelocity() const { return actualVelocity_; }
    [[nodiscard]] double deviation() const { return commandPosition_ - actualPosition_; }
    // Pulses still to go in a positioning; 0 otherwise.
    [[nodiscard]] double restPulses() const;
    [[nodiscard]] int torque() const { return torque_; }
    [[nodiscard]] int torqueLimit() const { return torqueLimit_; }
    [[nodiscard]] bool torqueLimited() const { return torqueLimited_; }
    [[nodiscard]] bool velocityLimited() const { return velocityLimited_; }
    [[nodiscard]] bool atPlusLimit() const;
    [[nodiscard]] bool atMinusLimit() const;

private:
    void stepVelocity();
    void stepPosition();
    void applyLimits();
    void followShaft(bool servoOn);

    Profile profile_ = Profile::Idle;
    double commandPosition_ = 0.0;
    double actualPosition_ = 0.0;
    double commandVelocity_ = 0.0;
    double actualVelocity_ = 0.0;
    double targetVelocity_ = 0.0;
    double targetPosition_ = 0.0;
    double profileSpeed_ = 0.0;
    double acceleration_ = 1.0;  // rpm per ms
    int gain_ = 50;
    int torque_ = 0;
    int torqueLimit_ = 15000;
    bool torqueLimited_ = false;
    bool velocityLimited_ = false;
    bool stopping_ = false;
    Limits limits_;
};

}  // namespace velora::sim
