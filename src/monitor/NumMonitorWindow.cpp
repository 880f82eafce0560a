#include "monitor/NumMonitorWindow.h"

#include "app/TextCatalogue.h"

namespace velora {

NumMonitorWindow::NumMonitorWindow(QWidget* parent)
    : ChildWindow(QStringLiteral("NumMonitor"), parent) {
}

void NumMonitorWindow::LanguageSelect(int languageId) {
    setWindowTitle(TextCatalogue::text(languageId, 1056));
}

}  // namespace velora
