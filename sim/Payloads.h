#pragma once

#include "sim/AlarmState.h"
#include "sim/DriveMemory.h"
#include "sim/DriveModel.h"
#include "sim/WaveCapture.h"

#include <QString>

#include <vector>

// The data part of the drive's long replies, everything after the axis character and the code.
// All numbers are fixed-width upper-case hex, negative ones in two's complement of their width.
namespace velora::sim::payload {

// The separator after each field of the block replies; the PC never reads it.
inline constexpr char Separator = ',';

// ma: 95 characters (91 for drives before version 1.10, which have no torque peak):
//  1-8 now position, 9-16 position command, 17-24 deviation, 25-32 rest pulses (8 each),
//  33-36 now velocity, 37-40 command velocity, 41-44 torque command % x 100 (4 each),
//  45-46 start point, 47-48 now point, 49-50 next point (2 each), 51-54 torque limit,
//  55-62 DEC-Z pulses, 63-66 I/O word, 67-70 status word, 71-72 alarm code,
//  73-91 nineteen "0", 92-95 torque peak % x 100.
[[nodiscard]] QString monitor(const MonitorValues& m, bool withTorquePeak);

// pa: 120 fields of 8 digits, each followed by the separator (1080 characters).
[[nodiscard]] QString allParameters(const DriveTables& t);
// PR: the value as 8 digits.
[[nodiscard]] QString parameter(qint32 value);

// One point as 23 characters: mode word (4), sep, position (8), sep, velocity No. (1), sep,
// ATC No. (1), sep, wait time (4), sep. ta is the 64 blocks in order; TR is one block.
[[nodiscard]] QString pointBlock(const PointEntry& p);
[[nodiscard]] QString allPoints(const DriveTables& t);

// ca: velocities No.0-9 (4 digits + sep each), ATC No.0-9 (8 + sep), torques No.0-7
// (4 + sep): 180 characters.
[[nodiscard]] QString allCommands(const DriveTables& t);

// AD: now-alarm mask (2 digits), then history entries 0-7 (newest first) as "0" followed by
// the alarm number as a decimal digit, "00" when empty: 18 characters.
[[nodiscard]] QString alarmData(const AlarmState& alarms);

// wd: 250 samples of 12 characters: velocity rpm (4), torque 0.1 % (4), logic "0"/"1",
// then "000".
[[nodiscard]] QString waveRecord(const std::vector<WaveSample>& samples);

}  // namespace velora::sim::payload
