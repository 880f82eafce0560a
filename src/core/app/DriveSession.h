#pragma once

#include "core/app/DriveCopies.h"
#include "core/app/ShellSetup.h"
#include "core/app/TransferActivity.h"
#include "core/comtable/ComTransfer.h"
#include "core/connect/AdapterWatch.h"
#include "core/link/LinkEngine.h"
#include "core/monitor/AlarmMonitor.h"
#include "core/monitor/RealTimeMonitor.h"
#include "core/params/ParamTransfer.h"
#include "core/pointtable/PointTransfer.h"
#include "core/wave/WaveCapture.h"

namespace velora {

class LinkUi;
struct Global;

// Everything of the program that is not a window: the link engine and the reply families that
// run beside it, so that identification and the monitor chain work whatever window is open.
// Built before the main window and gone after it, so no window ever outlives what it shows.
class DriveSession {
public:
    DriveSession(Global& global, LinkUi& ui, ShellSetup setup);
    Q_DISABLE_COPY_MOVE(DriveSession)
    ~DriveSession() = default;

    [[nodiscard]] Global& global() { return global_; }
    [[nodiscard]] ShellSetup& setup() { return setup_; }
    [[nodiscard]] LinkEngine& engine() { return engine_; }
    [[nodiscard]] ParamTransfer& paramTransfer() { return params_; }
    [[nodiscard]] PointTransfer& pointTransfer() { return points_; }
    [[nodiscard]] ComTransfer& comTransfer() { return commands_; }
    [[nodiscard]] RealTimeMonitor& realTimeMonitor() { return monitor_; }
    [[nodiscard]] AlarmMonitor& alarmMonitor() { return alarms_; }
    [[nodiscard]] WaveCapture& waveCapture() { return wave_; }
    [[nodiscard]] AdapterWatch& adapterWatch() { return adapterWatch_; }
    [[nodiscard]] DriveCopies& driveCopies() { return copies_; }
    [[nodiscard]] TransferActivity& transferActivity() { return activity_; }

private:
    Global& global_;
    ShellSetup setup_;
    LinkEngine engine_;
    // Declared after the engine: they unhook themselves from it first.
    ParamTransfer params_;
    PointTransfer points_;
    ComTransfer commands_;
    RealTimeMonitor monitor_;
    AlarmMonitor alarms_;
    WaveCapture wave_;
    AdapterWatch adapterWatch_;
    DriveCopies copies_;
    TransferActivity activity_;
};

}  // namespace velora
