#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

namespace velora {

// What the editors and the data files accept as a number: blanks around it, an optional sign,
// digits with at most one decimal point (at least one digit), and an optional exponent ("e" or
// "E", an optional sign, digits). Only the characters '0'-'9' and '.' count, whatever the
// user's locale, so a file reads the same everywhere.
[[nodiscard]] bool isNumeric(const QString& text);

// The number a numeric text stands for as a 32-bit integer: rounded halves to even (exactly,
// on the decimal digits), and a number beyond the 32-bit range taken as the nearest end of the
// range by its sign. nullopt when the text is not numeric.
[[nodiscard]] std::optional<qint32> toWholeNumber(const QString& text);

}  // namespace velora
