#include "monitor/IOStatusWindow.h"

#include "app/TextCatalogue.h"

namespace velora {

IOStatusWindow::IOStatusWindow(QWidget* parent) : ChildWindow(QStringLiteral("IOStatus"), parent) {
}

void IOStatusWindow::LanguageSelect(int languageId) {
    setWindowTitle(TextCatalogue::text(languageId, 1055));
}

}  // namespace velora
