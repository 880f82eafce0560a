#pragma once

#include "core/shared/DriveId.h"

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <optional>

namespace velora {

// The host's mirror of the drive's 120 parameters, indexed by parameter number: what the
// parameter windows show and edit, what the transfers and the parameter file read and write.
// The catalogue (ranges, restart flags, presets) is copied in by InitParamTables at start-up.
struct ParamTables {
    static constexpr int Count = 120;
    // 00-59 are the servo parameters of the parameter window, 60-119 the system parameters.
    static constexpr int ServoCount = 60;
    static constexpr int PresetRows = 6;
    static constexpr int PresetColumns = 16;

    // Element 120 is a spare that nothing uses.
    std::array<qint32, Count + 1> ParamValue{};
    std::array<qint32, Count> ParamMin{};
    std::array<qint32, Count> ParamMax{};
    // A change takes effect only after the drive is restarted.
    std::array<bool, Count> ParamRebootSet{};
    // Edited or loaded and not yet written to the drive: the next write sends exactly these.
    std::array<bool, Count> ParamChanged{};
    // Gain sets chosen by parameter 10; row r holds the values of parameter 11 + r.
    std::array<std::array<qint32, PresetColumns>, PresetRows> TuningPreset{};

    // The table holds values read from the drive or a file; Write File and Write Servo are
    // usable only then.
    bool ParamsLoaded = false;
    // Parameter 45 is marked only because the editor declined to couple it to parameter 01,
    // so writing it does not call for a restart.
    bool Prm45Undo = false;
    // A parameter file waits to be merged when the drive's values arrive.
    bool FileReadPending = false;
    // The drive the values came from, or none.
    DriveId Origin;

    [[nodiscard]] bool inRange(int n, qint64 value) const {
        return value >= ParamMin.at(static_cast<std::size_t>(n)) &&
               value <= ParamMax.at(static_cast<std::size_t>(n));
    }
    [[nodiscard]] qint32 clamped(int n, qint64 value) const {
        const auto i = static_cast<std::size_t>(n);
        return static_cast<qint32>(std::clamp<qint64>(value, ParamMin.at(i), ParamMax.at(i)));
    }
    // The lowest marked parameter number from `from` on.
    [[nodiscard]] std::optional<int> nextChanged(int from) const {
        for (int n = std::max(from, 0); n < Count; ++n) {
            if (ParamChanged[static_cast<std::size_t>(n)])
                return n;
        }
        return std::nullopt;
    }
};

}  // namespace velora
