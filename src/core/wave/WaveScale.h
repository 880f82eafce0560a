#pragma once

#include <QString>

#include <array>
#include <optional>

namespace velora::wave {

// The choice lists of the wave monitor and the arithmetic that maps samples onto its pictures.
// Pictures are addressed in fractions of their size, so any window size draws the same scope.

inline constexpr std::array<int, 6> TimeScaleMs{25, 50, 100, 200, 500, 1000};
inline constexpr std::array<int, 8> VelScaleRpm{10, 20, 50, 100, 250, 500, 1000, 2500};
inline constexpr std::array<int, 5> TqScalePercent{10, 20, 50, 100, 200};
inline constexpr int SourceCount = 4;    // velocity, torque command, logic, manual
inline constexpr int LogicCount = 3;     // FIN, TLIM, VLIM
inline constexpr int EdgeCount = 4;      // + up, + down, - up, - down
inline constexpr int WaveModeCount = 2;  // now + previous, now

inline constexpr int VerticalDivisions = 6;
inline constexpr int HorizontalDivisions = 10;
// Where the mouse and the strip may put the trigger: 20 % to 80 % of the record.
inline constexpr int MinTriggerPosition = 51;
inline constexpr int MaxTriggerPosition = 204;
// One click on the strip or one arrow key moves the trigger by this much.
inline constexpr int TriggerStep = 8;
inline constexpr int ZeroStep = 5;
// The units of the logic picture's height and its two levels for the newest record.
inline constexpr double LogicHeightUnits = 750.0;
inline constexpr double LogicHigh = 150.0;
inline constexpr double LogicLow = 600.0;
inline constexpr double LogicSlotOffset = 15.0;

// Percent <-> TriggerPosition, both rounded to the nearest integer, halves to even.
[[nodiscard]] int triggerPositionFromPercent(double percent);
[[nodiscard]] int percentFromTriggerPosition(int triggerPosition);
// A place along the trigger strip (0 left edge, 1 right edge) as a TriggerPosition, limited.
[[nodiscard]] int triggerPositionFromFraction(double fraction);
[[nodiscard]] int limitTriggerPosition(int triggerPosition);
// What a typed trigger position becomes: 20-80 %, or the unchanged position when not numeric.
[[nodiscard]] int triggerPositionFromText(const QString& text, int current);
// What a typed zero level becomes: 0-100, or the current level when not numeric.
[[nodiscard]] int zeroLevelFromText(const QString& text, int current);
[[nodiscard]] int limitZeroLevel(int level);
// A zero marker released at `fraction` of its strip from the top.
[[nodiscard]] int zeroLevelFromFraction(double fraction);

// The value range of an analogue picture: six divisions of the chosen scale, in the unit of
// the stored samples (rpm, 0.1 %). Channel 0 velocity, 1 torque; an index outside its list
// takes the first entry.
[[nodiscard]] double fullScale(int channel, int scaleIndex);
// The height fraction (0 top, 1 bottom) of a value with the zero line at zeroLevel percent.
[[nodiscard]] double yFraction(double value, double span, int zeroLevel);
// The value at a height fraction, the inverse of yFraction.
[[nodiscard]] double valueAt(double yFraction, double span, int zeroLevel);
// Height fraction of a logic level for slot 1 (newest) or 2 (previous).
[[nodiscard]] double logicYFraction(int slot, bool high);
// Milliseconds between samples: ten divisions of the time scale across the record.
[[nodiscard]] double sampleMs(int timeScaleIndex);

}  // namespace velora::wave
