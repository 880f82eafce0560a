#pragma once

#include "core/shared/NumericText.h"

#include <QString>
#include <QtGlobal>

#include <optional>

namespace velora {

// Background of a row (point table) or cell (command table) of the table editors.
enum class TableColour {
    Even,    // clean, even row: white
    Odd,     // clean, odd row: light violet
    Edited,  // typed by the user, waiting to be written
    Loaded,  // taken from a file, waiting to be written
};

// The colour as 0xRRGGBB (QColor takes it as it is).
[[nodiscard]] constexpr quint32 tableRgb(TableColour colour) {
    switch (colour) {
        case TableColour::Odd:
            return 0xFFC0FF;
        case TableColour::Edited:
            return 0xFF8080;
        case TableColour::Loaded:
            return 0xFFC0C0;
        case TableColour::Even:
            break;
    }
    return 0xFFFFFF;
}

// The clean colour of row `row`, alternating by parity.
[[nodiscard]] constexpr TableColour restingColour(int row) {
    return row % 2 == 0 ? TableColour::Even : TableColour::Odd;
}

// What leaving a table box decides: the value to store, whether it differs from the stored one
// (the entry is then marked for writing), and the text the box shows instead of what was typed
// (none: the typed text stays).
struct FieldCheck {
    qint32 value = 0;
    bool changed = false;
    std::optional<QString> shown;
};

// The check of both table editors: a text that is not a number gives the stored value back; a
// number is rounded (halves to even) and clamped to minimum..maximum, and a clamped box shows
// the limit. A number beyond the 32-bit range counts as below or above by its sign.
[[nodiscard]] inline FieldCheck checkTableField(const QString& text, qint32 stored, qint32 minimum,
                                                qint32 maximum) {
    const std::optional<qint32> number = toWholeNumber(text);
    if (!number)
        return {stored, false, QString::number(stored)};
    if (*number < minimum)
        return {minimum, stored != minimum, QString::number(minimum)};
    if (*number > maximum)
        return {maximum, stored != maximum, QString::number(maximum)};
    return {*number, *number != stored, std::nullopt};
}

// Enabling of an editor's controls by EnableControls(enable): the boxes and both read buttons
// follow `enable`; both write buttons only while the table holds a complete set of values.
struct TableControls {
    bool boxes = false;
    bool readFile = false;
    bool readServo = false;
    bool writeFile = false;
    bool writeServo = false;
};
[[nodiscard]] constexpr TableControls tableControls(bool enable, bool valid) {
    const bool write = enable && valid;
    return {enable, enable, enable, write, write};
}

}  // namespace velora
