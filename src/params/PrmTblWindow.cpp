#include "params/PrmTblWindow.h"

#include "app/TextCatalogue.h"

namespace velora {

PrmTblWindow::PrmTblWindow(QWidget* parent) : ChildWindow(QStringLiteral("PrmTbl"), parent) {
}

void PrmTblWindow::LanguageSelect(int languageId) {
    setWindowTitle(TextCatalogue::text(languageId, 1058));
}

}  // namespace velora
