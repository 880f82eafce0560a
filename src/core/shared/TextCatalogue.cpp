#include "core/shared/TextCatalogue.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace velora {

namespace textcatalogue_data {
// Defined in TextCatalogueData.cpp: rows of {id, text}, strictly ascending by id.
extern const std::pair<int, const char16_t*> kTexts[];
extern const std::size_t kTextCount;
}  // namespace textcatalogue_data

namespace {

using Row = std::pair<int, const char16_t*>;

const Row* findRow(int id) {
    const Row* first = textcatalogue_data::kTexts;
    const Row* last = first + textcatalogue_data::kTextCount;
    const Row* row =
        std::lower_bound(first, last, id, [](const Row& r, int key) { return r.first < key; });
    return (row != last && row->first == id) ? row : nullptr;
}

}  // namespace

QString TextCatalogue::LoadText(int id) {
    const Row* row = findRow(id);
    return row ? QString::fromUtf16(row->second) : QString();
}

bool TextCatalogue::contains(int id) {
    return findRow(id) != nullptr;
}

std::vector<int> TextCatalogue::ids() {
    std::vector<int> result;
    result.reserve(textcatalogue_data::kTextCount);
    for (std::size_t i = 0; i < textcatalogue_data::kTextCount; ++i) {
        result.push_back(textcatalogue_data::kTexts[i].first);
    }
    return result;
}

}  // namespace velora
