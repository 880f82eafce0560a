#pragma once

#include "sim/ParameterCatalogue.h"

#include <QtGlobal>

#include <array>

namespace velora::sim {

// One point of the drive's positioning table.
struct PointEntry {
    qint32 modeWord = 0;  // bits 0-2 position/torque code, bit 3 incremental, bits 4-5 next start
    qint32 position = 0;
    qint32 velocity = 0;  // command table velocity No.
    qint32 accConst = 0;  // command table ATC No.
    qint32 waitTime = 0;  // ms after arrival

    [[nodiscard]] int posTor() const { return modeWord & 0x7; }
    [[nodiscard]] bool incremental() const { return (modeWord & 0x8) != 0; }
    [[nodiscard]] int nextStart() const { return (modeWord >> 4) & 0x3; }
};

inline constexpr int PointCount = 64;
inline constexpr int VelocityCount = 10;
inline constexpr int AtcCount = 10;
inline constexpr int TorqueCount = 8;  // No.0 exists in the drive, the PC edits No.1-7

// Everything the drive keeps both in RAM and in non-volatile memory.
struct DriveTables {
    std::array<qint32, params::Count> params{};
    std::array<PointEntry, PointCount> points{};
    std::array<qint32, VelocityCount> velocity{};  // rpm, 0..4500
    std::array<qint32, AtcCount> atc{};            // ms, 1..999999
    std::array<qint32, TorqueCount> torque{};      // % x 100, 0..15000
};

// The drive's memory: the working copy in RAM and the copy a restart reloads. Writes are
// range-checked here, so a refused value never reaches either copy.
class DriveMemory {
public:
    DriveMemory(int axis, int version);

    [[nodiscard]] const DriveTables& ram() const { return ram_; }
    [[nodiscard]] const DriveTables& nonVolatile() const { return stored_; }
    [[nodiscard]] qint32 param(int n) const;

    // Each returns false (and changes nothing) for an index or value out of range.
    [[nodiscard]] bool writeParam(int n, qint32 value, bool nonVolatile);
    [[nodiscard]] bool writePoint(int index, const PointEntry& entry, bool nonVolatile);
    [[nodiscard]] bool writeVelocity(int index, qint32 value, bool nonVolatile);
    [[nodiscard]] bool writeAtc(int index, qint32 value, bool nonVolatile);
    [[nodiscard]] bool writeTorque(int index, qint32 value, bool nonVolatile);
    // Teaching stores a position into RAM only.
    void teachPoint(int index, qint32 position);

    void store() { stored_ = ram_; }
    void reload() { ram_ = stored_; }
    // Factory values into RAM; the axis number, line format and version stay.
    void loadFactoryValues();

private:
    [[nodiscard]] DriveTables factoryTables() const;

    int axis_;
    int version_;
    DriveTables ram_;
    DriveTables stored_;
};

}  // namespace velora::sim
