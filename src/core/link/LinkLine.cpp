#include "core/link/LinkLine.h"

#include "core/shared/LinkState.h"
#include "core/shared/TextCatalogue.h"

namespace velora::linkline {

QString statusText(int languageId, const LinkState& link, const QString& device,
                   const QString& simulatedDevice) {
    if (!link.Online)
        return TextCatalogue::text(languageId, 1606);
    QString name =
        simulatedDevice.isEmpty() ? device : TextCatalogue::text(languageId, 1605).arg(device);
    if (!link.run().PortOpen)
        name = TextCatalogue::text(languageId, 1607).arg(name);
    return TextCatalogue::text(languageId, 1604).arg(name, link.BaudRate).arg(link.AxisNumber);
}

QString captionPart(int languageId, const QString& deviceOverride, const QString& simulatedDevice) {
    // Nobody should mistake the simulated drive for a real one.
    if (!simulatedDevice.isEmpty())
        return TextCatalogue::text(languageId, 1608).arg(simulatedDevice);
    if (!deviceOverride.isEmpty())
        return TextCatalogue::text(languageId, 1609).arg(deviceOverride);
    return {};
}

}  // namespace velora::linkline
