#include "core/wave/WaveScale.h"

#include "core/shared/NumericText.h"
#include "core/shared/Rounding.h"
#include "core/shared/WaveStore.h"

#include <algorithm>

namespace velora::wave {

namespace {
constexpr double kPositionUnits = 256.0;

template <std::size_t N>
int entry(const std::array<int, N>& list, int index) {
    return index >= 0 && static_cast<std::size_t>(index) < N ? list[static_cast<std::size_t>(index)]
                                                             : list[0];
}
}  // namespace

int triggerPositionFromPercent(double percent) {
    return static_cast<int>(roundHalfEven(percent * kPositionUnits / 100.0));
}

int percentFromTriggerPosition(int triggerPosition) {
    return static_cast<int>(roundHalfEven(triggerPosition * 100.0 / kPositionUnits));
}

int limitTriggerPosition(int triggerPosition) {
    return std::clamp(triggerPosition, MinTriggerPosition, MaxTriggerPosition);
}

int triggerPositionFromFraction(double fraction) {
    return limitTriggerPosition(static_cast<int>(roundHalfEven(fraction * kPositionUnits)));
}

int triggerPositionFromText(const QString& text, int current) {
    const std::optional<qint32> whole = toWholeNumber(text);
    if (!whole)
        return current;
    // The fraction counts: 20.3 % is 52/256, not the 51 of 20 %. A text beyond the range of a
    // double falls back to its whole number, which the limits then take in.
    bool ok = false;
    const double typed = text.trimmed().toDouble(&ok);
    const double percent = ok ? typed : *whole;
    return triggerPositionFromPercent(std::clamp(percent, 20.0, 80.0));
}

int limitZeroLevel(int level) {
    return std::clamp(level, 0, 100);
}

int zeroLevelFromText(const QString& text, int current) {
    const std::optional<qint32> level = toWholeNumber(text);
    return level ? limitZeroLevel(*level) : current;
}

int zeroLevelFromFraction(double fraction) {
    return limitZeroLevel(static_cast<int>(roundHalfEven((1.0 - fraction) * 100.0)));
}

double fullScale(int channel, int scaleIndex) {
    // Torque samples are in 0.1 %: ten units to the percent.
    return channel == 0 ? VerticalDivisions * entry(VelScaleRpm, scaleIndex)
                        : VerticalDivisions * 10.0 * entry(TqScalePercent, scaleIndex);
}

double yFraction(double value, double span, int zeroLevel) {
    return (100.0 - zeroLevel) / 100.0 - value / span;
}

double valueAt(double yFraction, double span, int zeroLevel) {
    return ((100.0 - zeroLevel) / 100.0 - yFraction) * span;
}

double logicYFraction(int slot, bool high) {
    return ((high ? LogicHigh : LogicLow) + LogicSlotOffset * (slot - 1)) / LogicHeightUnits;
}

double sampleMs(int timeScaleIndex) {
    return HorizontalDivisions * entry(TimeScaleMs, timeScaleIndex) /
           static_cast<double>(WaveStore::SampleCount);
}

}  // namespace velora::wave
