#pragma once

namespace velora {

// The language of every text shown; the value is what the settings file stores.
enum class Language { English = 0, Japanese = 1 };

}  // namespace velora
