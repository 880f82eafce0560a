#include "core/shared/FieldCheck.h"

#include "core/shared/NumericText.h"

#include <algorithm>

namespace velora {

int checkedWholeNumber(const QString& text, int fallback, int minimum, int maximum) {
    const std::optional<qint32> number = toWholeNumber(text);
    return number ? std::clamp<int>(*number, minimum, maximum) : fallback;
}

}  // namespace velora
