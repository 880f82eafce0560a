#pragma once

#include "core/link/Transport.h"

#include <QString>

namespace velora {

// The device a port number stands for: COMn on Windows; on Linux /dev/ttyS(n-1) for a plain
// RS-232C port and /dev/ttyUSB(n-1) for a USB adapter.
[[nodiscard]] QString deviceForPort(BackEnd backEnd, int portNumber);

}  // namespace velora
