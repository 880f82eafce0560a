#pragma once

#include <QObject>

#include <array>
#include <functional>

#include "core/shared/Language.h"

class QAction;
class QMainWindow;
class QMenu;

namespace velora {

class HelpDialog;

// The main window's Help menu: the README (F1), the keyboard shortcuts, the alarm codes, and the
// Version Information dialog the System menu opens as well.
class HelpMenu : public QObject {
    Q_OBJECT
public:
    // showVersion opens the version dialog; languageId tells the language of the moment.
    HelpMenu(QMainWindow& window, std::function<void()> showVersion,
             std::function<Language()> languageId);
    Q_DISABLE_COPY_MOVE(HelpMenu)

    void LanguageSelect(Language languageId);
    [[nodiscard]] HelpDialog* dialog() const { return dialog_; }

private:
    QMenu* mnuHelp = nullptr;
    std::array<QAction*, 4> mnuHelpItem{};
    HelpDialog* dialog_ = nullptr;
};

}  // namespace velora
