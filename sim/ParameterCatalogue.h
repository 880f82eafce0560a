#pragma once

#include <QtGlobal>

namespace velora::sim::params {

inline constexpr int Count = 120;

// Numbers the drive itself acts on.
inline constexpr int AxisNo = 0;
inline constexpr int CommandMode = 1;
inline constexpr int SoftPlusOt = 6;
inline constexpr int SoftMinusOt = 7;
inline constexpr int PosPGain = 11;
inline constexpr int MaxDeviation = 17;
inline constexpr int InpositionArea = 18;
inline constexpr int JogVelocity = 21;
inline constexpr int JogAccel = 22;
inline constexpr int StepPulse0 = 23;
inline constexpr int ZrtnDirection = 28;
inline constexpr int ZrtnHighVelocity = 29;
inline constexpr int ZrtnLowVelocity = 30;
inline constexpr int ZrtnAccel = 31;
inline constexpr int ZrtnLastRun = 32;
inline constexpr int ComFormat = 43;
inline constexpr int ReplyWait = 44;
inline constexpr int Version = 119;

struct Range {
    qint32 min;
    qint32 max;
};

// The accepted range of parameter n (0..119).
[[nodiscard]] Range range(int n);
// The factory value of parameter n; axis and version are filled in by the drive.
[[nodiscard]] qint32 factoryValue(int n);
[[nodiscard]] bool inRange(int n, qint64 value);

// The line rate a COM. Format value selects: its remainder by 8 picks 9600, 19200, 38400,
// 57600 or 115200; the undefined remainders fall back to 9600.
[[nodiscard]] int baudFromComFormat(qint32 value);

}  // namespace velora::sim::params
