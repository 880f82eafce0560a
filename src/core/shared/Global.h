#pragma once

#include "core/shared/AlarmData.h"
#include "core/shared/ComTables.h"
#include "core/shared/ConnectionMemory.h"
#include "core/shared/LinkState.h"
#include "core/shared/ParamTables.h"
#include "core/shared/PointTables.h"
#include "core/shared/WaveMonSettings.h"
#include "core/shared/WaveStore.h"

namespace velora {

// The state every window shares, owned by the application and handed to the windows. Device
// mirrors join it as their subsystems arrive.
struct Global {
    LinkState Link;
    ParamTables Params;  // ParamValue, ParamMin/Max, ParamChanged, TuningPreset and their flags
    AlarmData Alarms;
    // Interval of the polling timer in ms (setting "RetryTime").
    int RetryTime = 250;
    bool AxisChangeCaution = true;     // caution when parameter 0 is edited ("AxisCngCtn")
    bool ConnectCautionDialog = true;  // caution of the parameter 1-45 coupling ("PrmCnctCtn")
    int Prm1To45Connect = 0;           // 0 ask every time, 1 couple, 2 do not couple ("PrmCnctSel")
    WaveMonSettings WaveMon;           // the wave monitor's stored choices ("WaveMonSettings")
    PointTables Points;                // PointTable, PointChanged, PointTableValid
    ComTables Com;                     // CmdVelocity, CmdAtc, CmdTorque, ComChanged, ComLoaded
    // The point table and command table windows stand docked side by side.
    bool TablesJoined = false;
    WaveStore Wave;               // WaveSamples, WaveLogic, TriggerPosition, ZeroLevel
    ConnectionMemory Connection;  // chosen device and remembered adapter ("Connection")
};

}  // namespace velora
