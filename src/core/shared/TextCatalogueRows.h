#pragma once

#include <cstddef>

#include "core/shared/TextId.h"

// The catalogue's compiled-in rows, shared only by TextCatalogue.cpp and TextCatalogueData.cpp.
namespace velora::textcatalogue_data {

struct TextRow {
    Text name;
    const char16_t* text;
};

// Each strictly ascending by name, so the lookup can bisect.
extern const TextRow kEnglish[];
extern const std::size_t kEnglishCount;
extern const TextRow kJapanese[];
extern const std::size_t kJapaneseCount;

}  // namespace velora::textcatalogue_data
