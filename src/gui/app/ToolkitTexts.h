#pragma once

#include <QTranslator>

#include "core/shared/Language.h"

namespace velora {

// The toolkit's own texts (the buttons of message boxes, the file dialogs) in the program's
// language. Qt's translations come with the system (Debian's qt6-translations-l10n); without
// them the toolkit stays in English and everything else still works.
class ToolkitTexts {
public:
    ToolkitTexts() = default;
    ~ToolkitTexts();
    Q_DISABLE_COPY_MOVE(ToolkitTexts)

    // Installs the translation for the language (0 English, 1 Japanese) in the application,
    // replacing the one installed before. Returns false when the language's file is missing.
    bool select(Language languageId);

private:
    QTranslator translator_;
    bool installed_ = false;
};

}  // namespace velora
