#pragma once

#include "sim/AlarmState.h"
#include "sim/DriveMemory.h"
#include "sim/MotionModel.h"
#include "sim/PointTableRun.h"
#include "sim/ZeroReturn.h"

#include <QtGlobal>

namespace velora::sim {

// What one monitor read shows; see the status and I/O bit lists on DriveModel.
struct MonitorValues {
    qint32 nowPosition = 0;
    qint32 positionCommand = 0;
    qint32 deviation = 0;
    qint32 restPulses = 0;
    int nowVelocity = 0;      // rpm
    int commandVelocity = 0;  // rpm
    int torque = 0;           // % x 100
    int startPoint = 0;
    int nowPoint = 0;
    int nextPoint = 0;
    int torqueLimit = 0;  // % x 100
    qint32 decZPulses = 0;
    int ioWord = 0;
    int statusWord = 0;
    int alarmCode = 0;
    int torquePeak = 0;  // % x 100
};

// The state of one drive: memory, servo, alarms and motion. Operating commands that the drive
// refuses in its present state return the reason; the caller answers it as an execution
// failure.
class DriveModel {
public:
    // Status word bits.
    enum StatusBit : int {
        ServoOnBit = 0,
        AlarmBit = 1,
        EmergencyStopBit = 2,
        InpositionBit = 3,
        RunPlusBit = 4,
        RunMinusBit = 5,
        CommandPlusBit = 6,
        CommandMinusBit = 7,
        PlusOtBit = 8,
        MinusOtBit = 9,
        ResolutionBit = 10,
        TorqueLimitBit = 11,
        VelocityLimitBit = 12,
        PointMoveBit = 13,
        ZeroReturnSensorBit = 14,
        ZeroReturnFinishedBit = 15,
    };
    // I/O word: outputs in bits 0-3 (FIN, ALM, ZPLS, brake released), inputs 1-5 in bits 8-12.
    enum IoBit : int { FinOutBit = 0, AlarmOutBit = 1, ZPulseOutBit = 2, BrakeOutBit = 3 };

    enum class Refusal {
        None,
        ServoOff,
        PointTableRunning,
        ZeroReturnNotFinished,
        ServoOn,
        Alarm,
        EmergencyStop,
    };

    DriveModel(int axis, int version);

    [[nodiscard]] DriveMemory& memory() { return memory_; }
    [[nodiscard]] const DriveMemory& memory() const { return memory_; }
    [[nodiscard]] const AlarmState& alarms() const { return alarms_; }
    [[nodiscard]] const MotionModel& motion() const { return motion_; }
    // Axis and line rate in effect: taken from parameters 0 and 43 at power-up and reset.
    [[nodiscard]] int axis() const { return axis_; }
    [[nodiscard]] int baudRate() const { return baudRate_; }
    [[nodiscard]] int version() const { return memory_.param(params::Version); }

    [[nodiscard]] Refusal servoOn();
    void servoOff();
    void emergencyStop();
    void setStartPoint(int point) { startPoint_ = point; }
    [[nodiscard]] Refusal startOn();
    [[nodiscard]] Refusal startOff();
    [[nodiscard]] Refusal zeroReturnOn();
    [[nodiscard]] Refusal zeroReturnOff();
    void setDecSignal(bool on) { decSignal_ = on; }
    // Redefines the position counter so that the command position reads position.
    void setPosition(qint32 position);
    [[nodiscard]] Refusal teachPoint();
    void selectResolution(int resolution) { resolution_ = resolution; }
    void selectTorque(int number) { torqueSelect_ = number; }
    [[nodiscard]] Refusal velocityOn();
    [[nodiscard]] Refusal velocityOff();
    void selectVelocity(int number);
    void setVelocityNegative(bool negative);
    [[nodiscard]] Refusal jog(bool negative);
    [[nodiscard]] Refusal jogOff();
    [[nodiscard]] Refusal step(int number);
    void resetAlarms();
    void clearAlarmHistory() { alarms_.clearHistory(); }
    void resetTorquePeak() { torquePeak_ = 0; }
    void raiseAlarm(int number);
    // The drive restarts: RAM reloaded, counter at 0, axis and line rate taken anew.
    [[nodiscard]] Refusal reset();
    // Input terminals 1-5 as bits 0-4, for hosts that want to show wiring.
    void setInputs(int bits) { inputs_ = bits & 0x1F; }

    void advance(int ms);

    [[nodiscard]] bool isServoOn() const { return servoOn_; }
    [[nodiscard]] bool zeroReturnFinished() const { return zeroReturnFinished_; }
    [[nodiscard]] int statusWord() const;
    [[nodiscard]] int ioWord() const;
    [[nodiscard]] MonitorValues monitor() const;
    [[nodiscard]] double machinePosition() const {
        return motion_.actualPosition() + machineOffset_;
    }

private:
    [[nodiscard]] Refusal motionGuard() const;
    [[nodiscard]] bool inposition() const;
    [[nodiscard]] bool homeSensor() const;
    void latchLineSettings();
    void stopActivities();
    void updateVelocityDrive();
    void tick();

    DriveMemory memory_;
    AlarmState alarms_;
    MotionModel motion_;
    PointTableRun pointRun_;
    ZeroReturn zeroReturn_;
    int axis_ = 0;
    int baudRate_ = 9600;
    bool servoOn_ = false;
    bool emergency_ = false;
    bool zeroReturnFinished_ = false;
    bool velocityDrive_ = false;
    bool velocityNegative_ = false;
    bool decSignal_ = false;
    int velocitySelect_ = 0;
    int torqueSelect_ = 0;
    int resolution_ = 0;
    int startPoint_ = 0;
    int inputs_ = 0;
    int torquePeak_ = 0;
    double machineOffset_ = 37000.0;  // where the machine stands when the counter reads 0
};

}  // namespace velora::sim
