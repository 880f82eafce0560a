#pragma once

#include "core/connect/DeviceFacts.h"
#include "core/link/Transport.h"

#include <QString>

namespace velora {

class LinkEngine;

// The one line that tells a user what to do after a port failed to open: the group to join and
// the command, the lock file left behind and how to remove it, or the process holding the
// device. Empty when the facts suggest nothing.
[[nodiscard]] QString openFailureAdvice(const QString& device, const DeviceFacts& facts,
                                        int languageId);

// That line for a port that would not open, from the facts of this system; empty when the
// opening failed otherwise (the port opened but refused its settings).
[[nodiscard]] QString adviceForFailedOpen(const OpenResult& failed, int languageId);

// Has the engine add that line to the reason of every failed opening, in the link's language.
void adviseOpenFailures(LinkEngine& engine);

}  // namespace velora
