#include "sim/DriveMemory.h"

namespace velora::sim {

namespace {

constexpr qint32 MaxPosition = 99999999;

bool validIndex(int index, int count) {
    return index >= 0 && index < count;
}

template <typename Array>
bool writeEntry(Array& ram, Array& stored, int index, qint32 value, bool nonVolatile) {
    const auto i = static_cast<std::size_t>(index);
    ram[i] = value;
    if (nonVolatile)
        stored[i] = value;
    return true;
}

}  // namespace

DriveMemory::DriveMemory(int axis, int version) : axis_(axis), version_(version) {
    ram_ = factoryTables();
    stored_ = ram_;
}

DriveTables DriveMemory::factoryTables() const {
    DriveTables t;
    for (int n = 0; n < params::Count; ++n) {
        t.params[static_cast<std::size_t>(n)] = params::factoryValue(n);
    }
    t.params[params::AxisNo] = axis_;
    t.params[params::Version] = version_;
    t.velocity = {100, 200, 500, 1000, 1500, 2000, 2500, 3000, 3500, 4000};
    t.atc = {50, 100, 100, 200, 200, 300, 300, 500, 500, 1000};
    t.torque = {15000, 2000, 4000, 6000, 8000, 10000, 12000, 15000};
    // A short demonstration run: out, further out, back a little, home; the rest stay zero.
    t.points[0] = {0x10, 10000, 3, 1, 100};
    t.points[1] = {0x10, 20000, 4, 1, 100};
    t.points[2] = {0x18, -5000, 2, 1, 200};
    t.points[3] = {0x00, 0, 5, 2, 0};
    return t;
}

qint32 DriveMemory::param(int n) const {
    return validIndex(n, params::Count) ? ram_.params[static_cast<std::size_t>(n)] : 0;
}

bool DriveMemory::writeParam(int n, qint32 value, bool nonVolatile) {
    if (!params::inRange(n, value))
        return false;
    // The version is the firmware's: a write is taken but cannot change it.
    if (n == params::Version)
        return true;
    return writeEntry(ram_.params, stored_.params, n, value, nonVolatile);
}

bool DriveMemory::writePoint(int index, const PointEntry& e, bool nonVolatile) {
    const bool ok = validIndex(index, PointCount) && e.modeWord >= 0 && e.modeWord <= 0x3F &&
                    e.position >= -MaxPosition && e.position <= MaxPosition &&
                    validIndex(e.velocity, VelocityCount) && validIndex(e.accConst, AtcCount) &&
                    e.waitTime >= 0 && e.waitTime <= 65535;
    if (!ok)
        return false;
    const auto i = static_cast<std::size_t>(index);
    ram_.points[i] = e;
    if (nonVolatile)
        stored_.points[i] = e;
    return true;
}

bool DriveMemory::writeVelocity(int index, qint32 value, bool nonVolatile) {
    if (!validIndex(index, VelocityCount) || value < 0 || value > 4500)
        return false;
    return writeEntry(ram_.velocity, stored_.velocity, index, value, nonVolatile);
}

bool DriveMemory::writeAtc(int index, qint32 value, bool nonVolatile) {
    if (!validIndex(index, AtcCount) || value < 1 || value > 999999)
        return false;
    return writeEntry(ram_.atc, stored_.atc, index, value, nonVolatile);
}

bool DriveMemory::writeTorque(int index, qint32 value, bool nonVolatile) {
    if (!validIndex(index, TorqueCount) || value < 0 || value > 15000)
        return false;
    return writeEntry(ram_.torque, stored_.torque, index, value, nonVolatile);
}

void DriveMemory::teachPoint(int index, qint32 position) {
    if (!validIndex(index, PointCount))
        return;
    ram_.points[static_cast<std::size_t>(index)].position =
        qBound(-MaxPosition, position, MaxPosition);
}

void DriveMemory::loadFactoryValues() {
    const DriveTables factory = factoryTables();
    const qint32 axis = ram_.params[params::AxisNo];
    const qint32 format = ram_.params[params::ComFormat];
    ram_ = factory;
    ram_.params[params::AxisNo] = axis;
    ram_.params[params::ComFormat] = format;
}

}  // namespace velora::sim
