#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

#include "core/shared/Language.h"

namespace velora {

struct ParamTables;

// What the host knows about each of the drive's 120 parameters: its range, whether a change
// needs a restart of the drive, its label and unit, the tuning presets of parameter 10 and the
// value of parameter 45 that belongs to each command mode. Every function takes a parameter
// number 0..119 (preset rows 0..5, columns 0..15) and throws std::out_of_range otherwise.
class ParamCatalogue {
public:
    ParamCatalogue() = delete;

    // Numbers with a meaning of their own on the host.
    static constexpr int AxisNo = 0;
    static constexpr int CommandMode = 1;
    static constexpr int PresetSelect = 10;
    static constexpr int FirstPresetParam = 11;
    static constexpr int ComFormat = 43;
    static constexpr int ReplyWait = 44;
    static constexpr int CommandEnable = 45;
    static constexpr int Version = 119;

    enum class Unit { None, Pulse, MilliAmpere, Millisecond, Rpm, PercentX100, Volt };

    [[nodiscard]] static qint32 minimum(int n);
    [[nodiscard]] static qint32 maximum(int n);
    [[nodiscard]] static bool needsRestart(int n);
    [[nodiscard]] static Unit unit(int n);
    // The unit label beside the value box; empty for none. Only "(Pulse)" is translated.
    [[nodiscard]] static QString unitText(Language languageId, Unit unit);

    // Servo parameters take their label ("00：Axis No.") from the text catalogue, the n-th text
    // from Param00AxisNo. System parameters have fixed Japanese captions in every language.
    [[nodiscard]] static QString label(Language languageId, int n);

    // The value preset `column` (the value of parameter 10) gives parameter 11 + row.
    [[nodiscard]] static qint32 tuningPreset(int row, int column);
    // The value of parameter 45 that belongs to command mode `commandMode` (parameter 01).
    [[nodiscard]] static std::optional<qint32> commandEnableFor(qint32 commandMode);
};

// Clears the mirror (values, marks, flags) and stores the catalogue's ranges, restart flags
// and tuning presets in it. Values are left at 0 even where 0 is out of range: nothing is
// clamped until a value is edited or loaded.
void InitParamTables(ParamTables& tables);

}  // namespace velora
