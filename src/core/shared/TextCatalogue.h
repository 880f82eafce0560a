#pragma once

#include <QString>

#include <vector>

namespace velora {

// Every text the program shows, in English (ids 1000-1939) and Japanese (the same base ids plus
// 1000). The table is compiled in; users cannot change it.
class TextCatalogue {
public:
    TextCatalogue() = delete;

    // The text stored under id; id already includes the language offset (LanguageId x 1000).
    // An id the catalogue does not hold yields an empty string.
    [[nodiscard]] static QString LoadText(int id);
    // The text of a base id in the given language (0 English, 1 Japanese).
    [[nodiscard]] static QString text(int languageId, int baseId) {
        return LoadText(languageId * 1000 + baseId);
    }
    [[nodiscard]] static bool contains(int id);
    // All ids held, ascending.
    [[nodiscard]] static std::vector<int> ids();
};

}  // namespace velora
