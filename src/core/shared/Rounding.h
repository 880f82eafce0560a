#pragma once

#include <cmath>

namespace velora {

// Rounds to the nearest integer, halves to even (2.5 -> 2, 3.5 -> 4), the rounding every timing
// and every number typed by the user follows.
[[nodiscard]] inline long roundHalfEven(double value) {
    const double rounded = std::nearbyint(value);  // default mode: to nearest, ties to even
    return static_cast<long>(rounded);
}

}  // namespace velora
