#pragma once

#include "core/app/SiblingProgram.h"
#include "core/link/LinkEngine.h"
#include "core/link/TransportFactory.h"
#include "core/shared/SettingsStore.h"

#include <QString>

namespace velora {

// How the main window is put together: where its settings live, how the link's back-ends are
// made and whether its timers run by themselves. The program takes the defaults; tests replace
// the settings store, the back-ends and the ticks.
struct ShellSetup {
    SettingsStore settings;
    TransportFactory transports = createTransport;
    LinkEngine::Ticks ticks = LinkEngine::Ticks::Timers;
    // A device that replaces the port number for this run (--port, --simulate).
    QString deviceOverride;
    // Shown in the caption while a simulated drive is on the line.
    QString simulatedDevice;
    // Where "Software Version Change" looks for the sibling program; empty means the
    // directory of this program.
    QString siblingDirectory;
    SiblingProgram::Starter startSibling = &SiblingProgram::startDetached;
};

}  // namespace velora
