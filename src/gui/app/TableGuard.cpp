#include "gui/app/TableGuard.h"

#include "core/app/DriveCopies.h"
#include "core/link/LinkEngine.h"
#include "core/shared/Global.h"
#include "core/shared/ServoStatus.h"
#include "core/shared/TextCatalogue.h"
#include "gui/shared/MessageBoxes.h"

namespace velora {

namespace {
// The table windows number their buttons alike.
constexpr int ReadFileButton = 1;
constexpr int WriteServoButton = 2;
constexpr int ReadServoButton = 3;
}  // namespace

TableGuard::TableGuard(Global& global, LinkEngine& engine, MessageBoxes& boxes, DriveCopies& copies,
                       QObject* parent)
    : QObject(parent), global_(global), engine_(engine), boxes_(boxes), copies_(copies) {
}

bool TableGuard::ask(const QString& text, Text title) {
    engine_.pauseTimer1();
    const QMessageBox::StandardButton answer =
        boxes_.show(text, TextCatalogue::text(global_.Link.LanguageId, title), QMessageBox::Warning,
                    QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    engine_.resumeTimer1();
    return answer == QMessageBox::Yes;
}

bool TableGuard::mayWrite(driverules::Table table) {
    const std::optional<QString> question = driverules::writeQuestion(global_, engine_, table);
    return !question || ask(*question, Text::MsgWriteAnotherDrive);
}

bool TableGuard::mayReplace(driverules::Table table) {
    const driverules::Unwritten marked = driverules::unwritten(global_, table);
    return marked.total() == 0 || ask(driverules::discardQuestion(global_.Link.LanguageId, marked),
                                      Text::MsgUnwrittenChanges);
}

bool TableGuard::mayChangeDrive() {
    const driverules::Unwritten marked = driverules::unwritten(global_);
    if (marked.total() == 0)
        return true;
    if (!ask(driverules::discardQuestion(global_.Link.LanguageId, marked),
             Text::MsgUnwrittenChanges))
        return false;
    copies_.restore();
    emit editsDropped();
    return true;
}

bool TableGuard::mayQuit() {
    const driverules::Unwritten marked = driverules::unwritten(global_);
    if (marked.total() > 0 && !ask(driverules::discardQuestion(global_.Link.LanguageId, marked),
                                   Text::MsgUnwrittenChanges))
        return false;
    // The status word is only the drive's present state while the monitor keeps it fresh.
    const LinkState& s = global_.Link;
    if (s.Online && s.run().MonitorRunning && ServoStatus(s.ServoStatus).servoOn()) {
        return ask(TextCatalogue::text(s.LanguageId, Text::MsgServoAxisOnNQuit).arg(s.AxisNumber),
                   Text::MsgQuit);
    }
    return true;
}

std::function<bool(int)> TableGuard::buttonGuard(driverules::Table table) {
    return [this, table](int button) {
        // Without the link the transfer refuses by itself; a question first would be in vain.
        const LinkState& s = global_.Link;
        const bool linkUp = s.Online && s.run().PortOpen;
        switch (button) {
            case WriteServoButton:
                return !linkUp || mayWrite(table);
            case ReadServoButton:
                return !linkUp || mayReplace(table);
            case ReadFileButton:
                return mayReplace(table);
            default:
                return true;
        }
    };
}

}  // namespace velora
