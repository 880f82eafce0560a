#include "gui/shared/DriveLine.h"

#include "core/link/DriveRules.h"
#include "core/link/LinkEngine.h"
#include "core/shared/LinkState.h"

namespace velora {

DriveLine::DriveLine(const DriveId& origin, const LinkEngine& engine, QWidget* parent)
    : QLabel(parent), origin_(origin), engine_(engine) {
    setObjectName(QStringLiteral("LabelDrive"));
    // A device path can be long and the table windows narrow: the line wraps, never cuts.
    setWordWrap(true);
}

void DriveLine::refresh() {
    setText(driverules::originLine(engine_.state().LanguageId, origin_));
    const bool elsewhere = origin_.known() && origin_ != driverules::currentDrive(engine_);
    setStyleSheet(elsewhere ? QStringLiteral("QLabel { color: #B00000; font-weight: bold; }")
                            : QString());
}

}  // namespace velora
