#include "monitor/AlarmMonWindow.h"

#include "app/TextCatalogue.h"

namespace velora {

AlarmMonWindow::AlarmMonWindow(QWidget* parent) : ChildWindow(QStringLiteral("AlarmMon"), parent) {
}

void AlarmMonWindow::LanguageSelect(int languageId) {
    setWindowTitle(TextCatalogue::text(languageId, 1050));
}

}  // namespace velora
