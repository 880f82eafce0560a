#include "core/connect/CheckCommand.h"

#include "core/connect/ConnectionCheck.h"
#include "core/link/PortNaming.h"
#include "core/shared/Global.h"
#include "core/shared/SettingsStore.h"
#include "core/shared/TextId.h"

#include <QTextStream>

namespace velora {

int runCheckCommand(const SettingsStore& settings, const QString& device, bool search,
                    QTextStream& out) {
    Global global;
    settings.loadComAndLanguage(global);
    settings.loadConnection(global.Connection);
    const LinkState& s = global.Link;
    CheckTarget target;
    target.device = device;
    if (target.device.isEmpty())
        target.device = global.Connection.Device;
    if (target.device.isEmpty())
        target.device =
            deviceForPort(s.UsbMode ? BackEnd::UsbSerial : BackEnd::Rs232, s.PortNumber);
    target.axis = s.AxisNumber;
    target.baud = s.baudRateValue() > 0 ? s.baudRateValue() : 9600;

    const QList<Finding> findings = ConnectionCheck().run(target);
    for (const Finding& finding : findings)
        out << finding.line(Language::English) << '\n';
    out.flush();
    if (search && ConnectionCheck::driveSilent(findings)) {
        const std::optional<LineSearchHit> hit = searchLine(target.device, s.UsbMode);
        const Finding found =
            hit ? Finding{Finding::Verdict::Note,
                          Text::CheckSearchDriveAnsweredOn,
                          {QString::number(hit->axis), QString::number(hit->baud)}}
                : Finding{Finding::Verdict::Problem, Text::CheckSearchNoDriveAnswered, {}};
        out << found.line(Language::English) << '\n';
        out.flush();
    }
    return ConnectionCheck::hasProblem(findings) ? 1 : 0;
}

}  // namespace velora
