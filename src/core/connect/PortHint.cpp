#include "core/connect/PortHint.h"

#include <QRegularExpression>
#include <QSerialPortInfo>

namespace velora {

std::optional<int> PortHint::portNumber() const {
    static const QRegularExpression kNumbered(QStringLiteral("^(COM|ttyS|ttyUSB)(\\d{1,3})$"));
    const QRegularExpressionMatch match = kNumbered.match(portName);
    if (!match.hasMatch())
        return std::nullopt;
    const int n = match.captured(2).toInt();
    return match.captured(1) == QLatin1String("COM") ? n : n + 1;
}

QString PortHint::line() const {
    QString text = portName;
    if (const std::optional<int> number = portNumber()) {
        // On Linux the same number opens another device through each back-end.
        QString backEnd;
        if (portName.startsWith(QLatin1String("ttyUSB")))
            backEnd = QStringLiteral(" (USB-RS232C)");
        else if (portName.startsWith(QLatin1String("ttyS")))
            backEnd = QStringLiteral(" (RS232C)");
        text = QStringLiteral("%1%2: %3").arg(*number).arg(backEnd, portName);
    }
    if (!description.isEmpty())
        text += QStringLiteral("  ") + description;
    if (vendorId && productId)
        text += QStringLiteral("  (USB %1)").arg(usbId());
    return text;
}

QString PortHint::usbId() const {
    if (!vendorId || !productId)
        return QString();
    return QStringLiteral("%1:%2")
        .arg(*vendorId, 4, 16, QLatin1Char('0'))
        .arg(*productId, 4, 16, QLatin1Char('0'));
}

QList<PortHint> PortHint::systemPorts() {
    QList<PortHint> ports;
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts()) {
        PortHint hint{info.portName(),     info.description(),  std::nullopt,         std::nullopt,
                      info.manufacturer(), info.serialNumber(), info.systemLocation()};
        if (info.hasVendorIdentifier() && info.hasProductIdentifier()) {
            hint.vendorId = info.vendorIdentifier();
            hint.productId = info.productIdentifier();
        }
        ports.append(hint);
    }
    return ports;
}

}  // namespace velora
