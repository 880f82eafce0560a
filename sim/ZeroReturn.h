#pragma once

#include "sim/MotionModel.h"

namespace velora::sim {

// Homing: fast in the chosen direction until the home sensor (the dog, or the DEC signal set
// by command) is seen, slow on to the next Z mark of the encoder, then the last-run pulses;
// there the position counter becomes 0. The machine has a dog every 100000 pulses and a Z
// mark every revolution.
class ZeroReturn {
public:
    static constexpr double DogPitch = 100000.0;
    static constexpr double DogHalfWidth = 2500.0;

    struct Settings {
        bool negative = true;
        double highRpm = 500.0;
        double lowRpm = 50.0;
        double accelMs = 100.0;
        double lastRun = 0.0;
    };

    // Whether the dog covers this machine position.
    [[nodiscard]] static bool onDog(double machinePosition);

    void start(const Settings& settings, MotionModel& motion);
    void abort(MotionModel& motion);
    // One millisecond, after the motion step; true once, when homing has just finished.
    [[nodiscard]] bool step(MotionModel& motion, double machinePosition, bool sensor);

    [[nodiscard]] bool running() const { return phase_ != Phase::Idle; }
    // Pulses between the sensor edge and the Z mark of the last homing.
    [[nodiscard]] double decZPulses() const { return decZ_; }

private:
    enum class Phase { Idle, Fast, Slow, LastRun };

    void enterSlow(MotionModel& motion, double machinePosition);

    Settings settings_;
    Phase phase_ = Phase::Idle;
    double sensorEdge_ = 0.0;
    double previousMachine_ = 0.0;
    double decZ_ = 0.0;
};

}  // namespace velora::sim
