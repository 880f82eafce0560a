#pragma once

#include "core/connect/DeviceFacts.h"
#include "core/shared/Language.h"

#include <QString>

namespace velora {

// The one line that tells a user what to do after a port failed to open: the group to join and
// the command, the lock file left behind and how to remove it, or the process holding the
// device. Empty when the facts suggest nothing.
[[nodiscard]] QString openFailureAdvice(const QString& device, const DeviceFacts& facts,
                                        Language languageId);

}  // namespace velora
