#include "comtable/ComTblWindow.h"

#include "app/TextCatalogue.h"

namespace velora {

ComTblWindow::ComTblWindow(QWidget* parent) : ChildWindow(QStringLiteral("ComTbl"), parent) {
}

void ComTblWindow::LanguageSelect(int languageId) {
    setWindowTitle(TextCatalogue::text(languageId, 1053));
}

}  // namespace velora
