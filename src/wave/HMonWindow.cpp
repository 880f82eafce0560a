#include "wave/HMonWindow.h"

#include "app/TextCatalogue.h"

namespace velora {

HMonWindow::HMonWindow(QWidget* parent) : ChildWindow(QStringLiteral("HMon"), parent) {
}

void HMonWindow::LanguageSelect(int languageId) {
    setWindowTitle(TextCatalogue::text(languageId, 1054));
}

}  // namespace velora
