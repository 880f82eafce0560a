#pragma once

#include <QString>

#include "core/shared/Language.h"

namespace velora {

struct LinkState;

// How the link in use is named to the user: the status bar's line ("/dev/ttyUSB0 · 38400 ·
// Axis 3") and the part of the main caption that names the device.
namespace linkline {

// The device, the rate and the axis; "Offline" when offline; the device marked as not open when
// it could not be opened. A simulated drive is named as such.
[[nodiscard]] QString statusText(Language languageId, const LinkState& link, const QString& device,
                                 const QString& simulatedDevice);

// " — simulated drive (path)" or " — device" when the command line chose the device; empty
// when the port number chose it.
[[nodiscard]] QString captionPart(Language languageId, const QString& deviceOverride,
                                  const QString& simulatedDevice);

}  // namespace linkline

}  // namespace velora
