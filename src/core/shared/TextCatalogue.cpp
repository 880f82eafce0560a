#include "core/shared/TextCatalogue.h"

#include <QtGlobal>

#include <algorithm>

#include "core/shared/TextCatalogueRows.h"

namespace velora {

namespace {

using textcatalogue_data::TextRow;

std::pair<const TextRow*, const TextRow*> rows(Language language) {
    using namespace textcatalogue_data;
    // Spelled out: a pair deduced from an array of unknown bound is refused by clang.
    if (language == Language::Japanese)
        return {&kJapanese[0], &kJapanese[0] + kJapaneseCount};
    return {&kEnglish[0], &kEnglish[0] + kEnglishCount};
}

const TextRow* findRow(Language language, Text name) {
    const auto [first, last] = rows(language);
    const TextRow* row = std::lower_bound(first, last, name,
                                          [](const TextRow& r, Text key) { return r.name < key; });
    return (row != last && row->name == name) ? row : nullptr;
}

}  // namespace

QString TextCatalogue::text(Language language, Text name) {
    const TextRow* row = findRow(language, name);
    return row ? QString::fromUtf16(row->text) : QString();
}

QString TextCatalogue::text(Language language, Text first, int offset) {
    const Text name = static_cast<Text>(static_cast<int>(first) + offset);
    const TextRow* row = findRow(language, name);
    Q_ASSERT_X(row, "TextCatalogue::text", "offset runs past the texts of its list");
    return row ? QString::fromUtf16(row->text) : QString();
}

std::vector<Text> TextCatalogue::names(Language language) {
    const auto [first, last] = rows(language);
    std::vector<Text> result;
    result.reserve(static_cast<std::size_t>(last - first));
    for (const TextRow* row = first; row != last; ++row) {
        result.push_back(row->name);
    }
    return result;
}

}  // namespace velora
