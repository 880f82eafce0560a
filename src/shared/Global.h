#pragma once

#include "shared/AlarmData.h"
#include "shared/LinkState.h"
#include "shared/ParamTables.h"

namespace velora {

// The state every window shares, owned by the application and handed to the windows. Device
// mirrors join it as their subsystems arrive.
struct Global {
    LinkState Link;
    ParamTables Params;  // ParamValue, ParamMin/Max, ParamChanged, TuningPreset and their flags
    AlarmData Alarms;
    // Interval of the polling timer in ms (setting "RetryTime").
    int RetryTime = 250;
};

}  // namespace velora
