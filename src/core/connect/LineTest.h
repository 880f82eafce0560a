#pragma once

#include "core/link/LowLatency.h"
#include "core/link/Transport.h"

#include <optional>

namespace velora {

// What the line test heard: whether the port opened, whether the drive answered the
// identification at the configured axis and rate, and the port's latency mode.
struct LineTestResult {
    OpenResult open;
    bool answered = false;
    int driverVersion = 0;  // software version x 100
    LowLatency lowLatency = LowLatency::NotApplicable;
};

// Opens device through the real serial back-end, sends the identification read ("PR77") to
// axis at baud and waits up to timeoutMs for its reply; the events of the caller's thread are
// processed meanwhile. The port is closed again before it returns.
[[nodiscard]] LineTestResult runLineTest(const QString& device, int axis, int baud,
                                         int timeoutMs = 1500);

// Where a drive answers: the first axis and rate at which the identification was answered.
struct LineSearchHit {
    int axis = 0;
    int baud = 0;
};

// Tries axes 0 to 14 at each rate from 9600 to 115200 (to 38400 through a USB adapter), like the
// port search of the comm settings, waiting probeTimeoutMs for each answer.
[[nodiscard]] std::optional<LineSearchHit> searchLine(const QString& device, bool usb,
                                                      int probeTimeoutMs = 150);

}  // namespace velora
