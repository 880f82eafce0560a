#pragma once

#include <QString>

namespace velora {

// The value a number box is corrected to when it is left: a text that is not a number gives
// fallback; a number is rounded to a whole number (halves to even) and clamped to
// minimum..maximum.
[[nodiscard]] int checkedWholeNumber(const QString& text, int fallback, int minimum, int maximum);

}  // namespace velora
