#pragma once

#include <QIcon>

namespace velora::waveicons {

// Small vector pictures for the wave monitor's picture buttons, drawn at any size: the trigger
// edge (resources 110-113: "+ Up", "+ Down", "- Up", "- Down") and the display mode
// (resources 120, 121: now with the previous wave, now only).
[[nodiscard]] QIcon edge(int index);
[[nodiscard]] QIcon waveMode(int index);

}  // namespace velora::waveicons
