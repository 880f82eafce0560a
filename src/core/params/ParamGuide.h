#pragma once

#include <QString>

#include "core/shared/Language.h"

namespace velora {

// What a person knows a servo parameter by: the explanation its box shows on hover, and
// whether it answers a search by number or by words of its name.
namespace paramguide {

// "17：Max Deviation", its range with the unit, and whether it takes effect only after the
// drive is restarted.
[[nodiscard]] QString toolTip(Language languageId, int n);

// True for an empty query; a number names the parameter of that number; words must all appear
// in the label (of the language shown, or the English one), in any case and order.
[[nodiscard]] bool matches(Language languageId, int n, const QString& query);

}  // namespace paramguide

}  // namespace velora
