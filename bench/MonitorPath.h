#pragma once

#include <QtGlobal>

namespace velora::bench {

// What the monitor did through the whole program at one rate.
struct MonitorPathResult {
    int baud = 0;
    int exchanges = 0;
    double seconds = 0;
    double exchangesPerSecond = 0;
    // Exchanges per second the line allows: both frames at 11 bits per character plus the
    // drive's reply wait.
    double lineLimit = 0;
    // From the last byte of a monitor reply on the line to the first byte of the next request,
    // as the drive sees it.
    double turnaroundMedianMs = 0;
    double turnaroundP99Ms = 0;
    double turnaroundMeanMs = 0;
    // How late the simulated drive put the end of each reply on the line, against its timing.
    double simLateMedianMs = 0;
    double simLateP99Ms = 0;
    double simLateMeanMs = 0;
    // Inside the program: from the start of the event that brought the reply's last bytes to
    // the next request written to the port. The rest of the turnaround is the operating
    // system's (pseudo-terminal hand-over and waking both sides), which a loaded machine
    // stretches.
    double handlingMedianMs = 0;
    double handlingP99Ms = 0;
    // CPU of everything but the simulated drive (the program's thread and Qt's helpers).
    double programCpuPercent = 0;
    double programCpuPerExchangeUs = 0;
};

// Velora as a user runs it (the main window with its child windows, offscreen, the RS-232C
// back-end on a pseudo-terminal, the real-time monitor on) against the paced simulated drive,
// which runs on a thread of its own as a drive would on its own hardware.
// usbAdapter chooses the USB-RS232C back-end instead.
[[nodiscard]] MonitorPathResult measureMonitorPath(int baud, int replyWaitMs, int seconds,
                                                   bool usbAdapter = false);

}  // namespace velora::bench
