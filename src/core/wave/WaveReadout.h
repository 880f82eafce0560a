#pragma once

#include "core/shared/Language.h"
#include "core/shared/WaveStore.h"

#include <QString>

#include <array>

namespace velora::wave {

// What the newest record ("now", slot 1) holds at one sample, in the units a user reads: time
// from the start of the record in ms (ten divisions of the time scale across the record),
// velocity in rpm, torque command in %, the logic level.
struct Reading {
    double timeMs = 0;
    int velocity = 0;
    double torquePercent = 0;
    int logic = 0;
};

[[nodiscard]] Reading readingAt(const WaveStore& store, int sample, int timeScaleIndex);
// One line: "12.00 ms   -1250 rpm   -0.5 %   L 1".
[[nodiscard]] QString formatReading(const Reading& r);
// The two cursors and their difference (cursor 2 minus cursor 1) as a small HTML table; the
// row titles come from the catalogue in the given language. A cursor at -1 is not placed.
[[nodiscard]] QString cursorTable(const WaveStore& store, const std::array<int, 2>& cursors,
                                  int timeScaleIndex, Language languageId);

}  // namespace velora::wave
