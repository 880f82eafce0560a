#include "pointtable/PointTblWindow.h"

#include "app/TextCatalogue.h"

namespace velora {

PointTblWindow::PointTblWindow(QWidget* parent) : ChildWindow(QStringLiteral("PointTbl"), parent) {
}

void PointTblWindow::LanguageSelect(int languageId) {
    setWindowTitle(TextCatalogue::text(languageId, 1057));
}

}  // namespace velora
