#include "core/link/PortNaming.h"

namespace velora {

QString deviceForPort(BackEnd backEnd, int portNumber) {
#ifdef Q_OS_WIN
    Q_UNUSED(backEnd);
    return QStringLiteral("COM%1").arg(portNumber);
#else
    const QString stem =
        backEnd == BackEnd::UsbSerial ? QStringLiteral("/dev/ttyUSB") : QStringLiteral("/dev/ttyS");
    return stem + QString::number(portNumber - 1);
#endif
}

}  // namespace velora
