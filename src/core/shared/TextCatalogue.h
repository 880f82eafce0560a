#pragma once

#include <QString>

#include <vector>

#include "core/shared/Language.h"
#include "core/shared/TextId.h"

namespace velora {

// Every text the program shows, in English and Japanese, looked up by name. The table is compiled
// in; users cannot change it.
class TextCatalogue {
public:
    TextCatalogue() = delete;

    // A name the table does not hold yields an empty string.
    [[nodiscard]] static QString text(Language language, Text name);
    // The text `offset` rows after `first` in a run of consecutive ids (list entries, alarm
    // names, status bits); asserts the result is held, so an index past the run is caught.
    [[nodiscard]] static QString text(Language language, Text first, int offset);
    // The names the table holds for a language, in table order.
    [[nodiscard]] static std::vector<Text> names(Language language);
};

}  // namespace velora
