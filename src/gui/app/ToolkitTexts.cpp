#include "gui/app/ToolkitTexts.h"
#include "core/shared/Language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

namespace velora {

ToolkitTexts::~ToolkitTexts() {
    if (installed_)
        QCoreApplication::removeTranslator(&translator_);
}

bool ToolkitTexts::select(Language languageId) {
    if (installed_) {
        QCoreApplication::removeTranslator(&translator_);
        installed_ = false;
    }
    // English is the toolkit's own language: nothing to load.
    if (languageId == Language::English)
        return true;
    if (!translator_.load(QLocale(QLocale::Japanese), QStringLiteral("qtbase"), QStringLiteral("_"),
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        return false;
    installed_ = QCoreApplication::installTranslator(&translator_);
    return installed_;
}

}  // namespace velora
