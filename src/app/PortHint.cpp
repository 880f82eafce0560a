#include "app/PortHint.h"

#include <QRegularExpression>

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
    if (vendorId && productId) {
        text += QStringLiteral("  (USB %1:%2)")
                    .arg(*vendorId, 4, 16, QLatin1Char('0'))
                    .arg(*productId, 4, 16, QLatin1Char('0'));
    }
    return text;
}

}  // namespace velora
