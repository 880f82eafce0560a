#include "core/link/LinkLine.h"

#include "core/shared/LinkState.h"
#include "core/shared/TextCatalogue.h"

namespace velora::linkline {

QString statusText(Language languageId, const LinkState& link, const QString& device,
                   const QString& simulatedDevice) {
    if (!link.Online)
        return TextCatalogue::text(languageId, Text::StatusBarOffline);
    QString name = simulatedDevice.isEmpty()
                       ? device
                       : TextCatalogue::text(languageId, Text::StatusBarSimulatedDrive).arg(device);
    if (!link.run().PortOpen)
        name = TextCatalogue::text(languageId, Text::StatusBarNotOpen).arg(name);
    return TextCatalogue::text(languageId, Text::StatusBarPortAxis)
        .arg(name, link.BaudRate)
        .arg(link.AxisNumber);
}

QString captionPart(Language languageId, const QString& deviceOverride,
                    const QString& simulatedDevice) {
    // Nobody should mistake the simulated drive for a real one.
    if (!simulatedDevice.isEmpty())
        return TextCatalogue::text(languageId, Text::StatusBarSimulatedSuffix).arg(simulatedDevice);
    if (!deviceOverride.isEmpty())
        return TextCatalogue::text(languageId, Text::StatusBarDeviceSuffix).arg(deviceOverride);
    return {};
}

}  // namespace velora::linkline
