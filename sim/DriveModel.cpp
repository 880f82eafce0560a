#include "sim/DriveModel.h"

#include <algorithm>
#include <cmath>

namespace velora::sim {

namespace {

qint32 toCounter(double value) {
    // The counter wraps like the drive's 32-bit register.
    return static_cast<qint32>(static_cast<quint32>(static_cast<qint64>(std::llround(value))));
}

int bit(bool on, int index) {
    return on ? (1 << index) : 0;
}

}  // namespace

DriveModel::DriveModel(int axis, int version) : memory_(axis, version) {
    latchLineSettings();
}

void DriveModel::latchLineSettings() {
    axis_ = memory_.param(params::AxisNo);
    baudRate_ = params::baudFromComFormat(memory_.param(params::ComFormat));
}

DriveModel::Refusal DriveModel::motionGuard() const {
    if (!servoOn_)
        return Refusal::ServoOff;
    if (pointRun_.running())
        return Refusal::PointTableRunning;
    return Refusal::None;
}

void DriveModel::stopActivities() {
    pointRun_.stop();
    zeroReturn_.abort(motion_);
    velocityDrive_ = false;
}

DriveModel::Refusal DriveModel::servoOn() {
    if (alarms_.active())
        return Refusal::Alarm;
    if (emergency_)
        return Refusal::EmergencyStop;
    servoOn_ = true;
    return Refusal::None;
}

void DriveModel::servoOff() {
    stopActivities();
    servoOn_ = false;
    motion_.release();
}

void DriveModel::emergencyStop() {
    emergency_ = true;
    servoOff();
}

DriveModel::Refusal DriveModel::startOn() {
    const Refusal r = motionGuard();
    if (r != Refusal::None)
        return r;
    stopActivities();
    pointRun_.start(startPoint_);
    return Refusal::None;
}

DriveModel::Refusal DriveModel::startOff() {
    // The run goes on by itself once started; the start signal only has to be refused when
    // the drive could not take it.
    return motionGuard();
}

DriveModel::Refusal DriveModel::zeroReturnOn() {
    const Refusal r = motionGuard();
    if (r != Refusal::None)
        return r;
    stopActivities();
    ZeroReturn::Settings s;
    s.negative = memory_.param(params::ZrtnDirection) == 0;
    s.highRpm = memory_.param(params::ZrtnHighVelocity);
    s.lowRpm = memory_.param(params::ZrtnLowVelocity);
    s.accelMs = memory_.param(params::ZrtnAccel);
    s.lastRun = memory_.param(params::ZrtnLastRun);
    zeroReturnFinished_ = false;
    zeroReturn_.start(s, motion_);
    return Refusal::None;
}

DriveModel::Refusal DriveModel::zeroReturnOff() {
    const Refusal r = motionGuard();
    if (r == Refusal::None)
        zeroReturn_.abort(motion_);
    return r;
}

void DriveModel::setPosition(qint32 position) {
    // The command is the reference: once the shaft settles it reads exactly position.
    const double delta = position - motion_.commandPosition();
    motion_.shiftCounter(delta);
    machineOffset_ -= delta;
}

DriveModel::Refusal DriveModel::teachPoint() {
    if (!zeroReturnFinished_)
        return Refusal::ZeroReturnNotFinished;
    memory_.teachPoint(startPoint_, toCounter(motion_.actualPosition()));
    return Refusal::None;
}

void DriveModel::updateVelocityDrive() {
    if (!velocityDrive_)
        return;
    const auto i = static_cast<std::size_t>(velocitySelect_);
    const double rpm = memory_.ram().velocity[i];
    motion_.runVelocity(velocityNegative_ ? -rpm : rpm, memory_.ram().atc[i]);
}

DriveModel::Refusal DriveModel::velocityOn() {
    const Refusal r = motionGuard();
    if (r != Refusal::None)
        return r;
    stopActivities();
    velocityDrive_ = true;
    updateVelocityDrive();
    return Refusal::None;
}

DriveModel::Refusal DriveModel::velocityOff() {
    const Refusal r = motionGuard();
    if (r == Refusal::None && velocityDrive_) {
        velocityDrive_ = false;
        motion_.decelerate();
    }
    return r;
}

void DriveModel::selectVelocity(int number) {
    velocitySelect_ = number;
    updateVelocityDrive();
}

void DriveModel::setVelocityNegative(bool negative) {
    velocityNegative_ = negative;
    updateVelocityDrive();
}

DriveModel::Refusal DriveModel::jog(bool negative) {
    const Refusal r = motionGuard();
    if (r != Refusal::None)
        return r;
    stopActivities();
    const double rpm = memory_.param(params::JogVelocity);
    motion_.runVelocity(negative ? -rpm : rpm, memory_.param(params::JogAccel));
    return Refusal::None;
}

DriveModel::Refusal DriveModel::jogOff() {
    const Refusal r = motionGuard();
    if (r == Refusal::None && motion_.profile() == MotionModel::Profile::Velocity &&
        !velocityDrive_ && !zeroReturn_.running()) {
        motion_.decelerate();
    }
    return r;
}

DriveModel::Refusal DriveModel::step(int number) {
    const Refusal r = motionGuard();
    if (r != Refusal::None)
        return r;
    stopActivities();
    const double pulses = memory_.param(params::StepPulse0 + number);
    motion_.moveTo(motion_.commandPosition() + pulses, memory_.param(params::JogVelocity),
                   memory_.param(params::JogAccel));
    return Refusal::None;
}

void DriveModel::resetAlarms() {
    alarms_.reset();
    emergency_ = false;
}

void DriveModel::raiseAlarm(int number) {
    if (!alarms_.raise(number))
        return;
    servoOff();
}

DriveModel::Refusal DriveModel::reset() {
    if (servoOn_)
        return Refusal::ServoOn;
    memory_.reload();
    latchLineSettings();
    stopActivities();
    // The counter restarts at 0 where the shaft stands; the machine does not move.
    machineOffset_ += motion_.actualPosition();
    motion_ = MotionModel{};
    alarms_.reset();
    emergency_ = false;
    zeroReturnFinished_ = false;
    velocityNegative_ = false;
    decSignal_ = false;
    velocitySelect_ = 0;
    torqueSelect_ = 0;
    resolution_ = 0;
    startPoint_ = 0;
    torquePeak_ = 0;
    return Refusal::None;
}

void DriveModel::advance(int ms) {
    for (int i = 0; i < ms; ++i)
        tick();
}

void DriveModel::tick() {
    const DriveTables& t = memory_.ram();
    motion_.setGain(memory_.param(params::PosPGain));
    motion_.setLimits({static_cast<double>(memory_.param(params::SoftPlusOt)),
                       static_cast<double>(memory_.param(params::SoftMinusOt))});
    const int pushNo = pointRun_.torqueNo(t);
    motion_.setTorqueLimit(
        t.torque[static_cast<std::size_t>(pushNo >= 0 ? pushNo : torqueSelect_)]);

    pointRun_.step(motion_, t);
    motion_.step(servoOn_);
    if (zeroReturn_.step(motion_, machinePosition(), homeSensor())) {
        setPosition(0);
        zeroReturnFinished_ = true;
    }
    torquePeak_ = std::max(torquePeak_, std::abs(motion_.torque()));
    const int maxDeviation = memory_.param(params::MaxDeviation);
    if (servoOn_ && maxDeviation > 0 && std::abs(motion_.deviation()) > maxDeviation) {
        raiseAlarm(AlarmState::OverDeviation);
    }
}

bool DriveModel::inposition() const {
    return servoOn_ && !motion_.busy() &&
           std::abs(motion_.deviation()) <= memory_.param(params::InpositionArea);
}

bool DriveModel::homeSensor() const {
    return decSignal_ || ZeroReturn::onDog(machinePosition());
}

int DriveModel::statusWord() const {
    const double v = motion_.actualVelocity();
    const double c = motion_.commandVelocity();
    return bit(servoOn_, ServoOnBit) | bit(alarms_.active(), AlarmBit) |
           bit(emergency_, EmergencyStopBit) | bit(inposition(), InpositionBit) |
           bit(v >= 0.5, RunPlusBit) | bit(v <= -0.5, RunMinusBit) | bit(c > 0.0, CommandPlusBit) |
           bit(c < 0.0, CommandMinusBit) | bit(motion_.atPlusLimit(), PlusOtBit) |
           bit(motion_.atMinusLimit(), MinusOtBit) | bit(resolution_ == 1, ResolutionBit) |
           bit(motion_.torqueLimited(), TorqueLimitBit) |
           bit(motion_.velocityLimited(), VelocityLimitBit) |
           bit(pointRun_.running(), PointMoveBit) | bit(homeSensor(), ZeroReturnSensorBit) |
           bit(zeroReturnFinished_, ZeroReturnFinishedBit);
}

int DriveModel::ioWord() const {
    // The Z output is on for a narrow band around each revolution mark.
    const double rev = MotionModel::PulsesPerRevolution;
    const double m = machinePosition();
    const bool zPulse = std::abs(m - std::round(m / rev) * rev) < 50.0;
    int inputs = inputs_;
    // In command mode 1 input 5 is the DEC input; the commanded DEC signal shows there.
    if (decSignal_ && memory_.param(params::CommandMode) == 1)
        inputs |= 1 << 4;
    return bit(inposition(), FinOutBit) | bit(alarms_.active(), AlarmOutBit) |
           bit(zPulse, ZPulseOutBit) | bit(servoOn_, BrakeOutBit) | (inputs << 8);
}

MonitorValues DriveModel::monitor() const {
    const DriveTables& t = memory_.ram();
    MonitorValues m;
    m.nowPosition = toCounter(motion_.actualPosition());
    m.positionCommand = toCounter(motion_.commandPosition());
    m.deviation = m.positionCommand - m.nowPosition;
    m.restPulses = toCounter(motion_.restPulses());
    m.nowVelocity = static_cast<int>(std::lround(motion_.actualVelocity()));
    m.commandVelocity = static_cast<int>(std::lround(motion_.commandVelocity()));
    m.torque = motion_.torque();
    m.startPoint = startPoint_;
    m.nowPoint = pointRun_.currentPoint();
    m.nextPoint = pointRun_.running() ? pointRun_.nextPoint(t) : startPoint_;
    m.torqueLimit = motion_.torqueLimit();
    m.decZPulses = toCounter(zeroReturn_.decZPulses());
    m.ioWord = ioWord();
    m.statusWord = statusWord();
    m.alarmCode = alarms_.code();
    m.torquePeak = torquePeak_;
    return m;
}

}  // namespace velora::sim
