#pragma once

#include "shared/LinkState.h"

namespace velora {

// The state every window shares, owned by the application and handed to the windows. Device
// mirrors join it as their subsystems arrive.
struct Global {
    LinkState Link;
    // Interval of the polling timer in ms (setting "RetryTime").
    int RetryTime = 250;
};

}  // namespace velora
