#include "core/app/TransferActivity.h"

#include "core/link/LinkEngine.h"
#include "core/link/WireFormat.h"
#include "core/params/ParamTransfer.h"
#include "core/shared/Global.h"
#include "core/shared/TextCatalogue.h"

#include <algorithm>

namespace velora {

namespace {

// Characters of the whole-table replies: axis, code and the fields.
constexpr int ParamsReplyLength = 3 + 120 * 9;
constexpr int PointsReplyLength = 3 + 64 * 23;
constexpr int CommandsReplyLength = 3 + 180;

}  // namespace

void TransferActivity::begin() {
    total_ = driverules::unwritten(global_);
}

QString TransferActivity::position(int total, int remaining) const {
    const int done = std::clamp(total - remaining, 0, std::max(total - 1, 0));
    return QStringLiteral("%1/%2").arg(done + 1).arg(std::max(total, 1));
}

QString TransferActivity::received(int expected) const {
    const qsizetype size = engine_.state().ReceiveBuffer.size();
    if (size == 0)
        return {};
    const qsizetype percent = std::min<qsizetype>(99, size * 100 / expected);
    return QStringLiteral(" %1 %").arg(percent);
}

QString TransferActivity::text() const {
    const LinkState& s = engine_.state();
    const Language lang = s.LanguageId;
    const QString drive = driverules::name(lang, driverules::currentDrive(engine_));
    // The chain's command may still wait for its slot.
    const QString command =
        s.run().QueuedCommand.isEmpty() ? s.run().LastCommand : s.run().QueuedCommand;
    const QString code = wire::codeOf(command);
    const bool writing = code.size() == 2 && code.at(0).isUpper() &&
                         (code.at(1) == QLatin1Char('W') || code.at(1) == QLatin1Char('T'));
    const driverules::Unwritten now = driverules::unwritten(global_);
    if (s.run().ParamTransferActive) {
        if (!writing)
            return TextCatalogue::text(lang, Text::PointTableReadingParameters).arg(drive) +
                   received(ParamsReplyLength);
        return TextCatalogue::text(lang, Text::PointTableWritingParameter)
            .arg(params_.paramIndex(), 2, 10, QLatin1Char('0'))
            .arg(drive, position(total_.params, now.params));
    }
    if (s.run().PointTransferActive) {
        if (!writing)
            return TextCatalogue::text(lang, Text::PointTableReadingPointTable).arg(drive) +
                   received(PointsReplyLength);
        return TextCatalogue::text(lang, Text::PointTableWritingPoint)
            .arg(global_.Points.PointTransferIndex)
            .arg(drive, position(total_.points, now.points));
    }
    if (s.run().ComTableTransferActive) {
        if (!writing)
            return TextCatalogue::text(lang, Text::PointTableReadingCommandTable).arg(drive) +
                   received(CommandsReplyLength);
        const int k = global_.Com.ComIndex;
        const Text heading =
            ComTables::column(k) == ComTables::Column::Atc      ? Text::PointTableWritingATCNo
            : ComTables::column(k) == ComTables::Column::Torque ? Text::PointTableWritingTorqueNo
                                                                : Text::PointTableWritingVelocityNo;
        return TextCatalogue::text(lang, heading)
            .arg(ComTables::number(k))
            .arg(drive, position(total_.commands, now.commands));
    }
    return {};
}

}  // namespace velora
