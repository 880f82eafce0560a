#pragma once

#include <QString>

namespace velora {

// Whether replies pass the adapter at once. Some USB adapters otherwise hold received bytes back
// for up to 16 ms, which caps the monitor near 60 exchanges per second.
enum class LowLatency { On, Refused, NotApplicable };

// USB adapters: ttyUSBn (FTDI, CP210x, PL2303, CH340 ...) and ttyACMn.
[[nodiscard]] bool isUsbAdapterDevice(const QString& device);

// Asks the serial driver behind the open descriptor fd for low-latency mode. Refused when the
// driver or the user's rights do not allow it; NotApplicable where there is no such mode.
[[nodiscard]] LowLatency requestLowLatency(qintptr fd);

}  // namespace velora
