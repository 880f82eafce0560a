#include "core/link/LowLatency.h"

#ifdef Q_OS_LINUX
#include <linux/serial.h>
#include <sys/ioctl.h>
#endif

namespace velora {

bool isUsbAdapterDevice(const QString& device) {
    return device.contains(QLatin1String("ttyUSB")) || device.contains(QLatin1String("ttyACM"));
}

LowLatency requestLowLatency(qintptr fd) {
#ifdef Q_OS_LINUX
    serial_struct serial{};
    if (fd < 0 || ::ioctl(static_cast<int>(fd), TIOCGSERIAL, &serial) != 0)
        return LowLatency::NotApplicable;
    if ((serial.flags & ASYNC_LOW_LATENCY) != 0)
        return LowLatency::On;
    serial.flags |= ASYNC_LOW_LATENCY;
    if (::ioctl(static_cast<int>(fd), TIOCSSERIAL, &serial) != 0)
        return LowLatency::Refused;
    // Drivers that do not know the flag accept the call and drop it; only a read-back tells.
    serial_struct check{};
    if (::ioctl(static_cast<int>(fd), TIOCGSERIAL, &check) != 0 ||
        (check.flags & ASYNC_LOW_LATENCY) == 0)
        return LowLatency::Refused;
    return LowLatency::On;
#else
    Q_UNUSED(fd);
    return LowLatency::NotApplicable;
#endif
}

}  // namespace velora
