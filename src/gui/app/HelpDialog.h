#pragma once

#include <QDialog>

#include "core/shared/Language.h"

class QLabel;
class QTabWidget;
class QTableWidget;
class QTextBrowser;

namespace velora {

// The Help window: the README that ships with Velora, the keyboard shortcuts and the alarm codes
// with their causes and remedies. Filled anew each time it is shown, in the language of the
// moment, so shortcuts that actions of the main window gain later are listed by themselves.
class HelpDialog : public QDialog {
    Q_OBJECT
public:
    enum class Page { ReadMe, Shortcuts, Alarms };

    // shortcutsOf: the window whose actions' shortcuts are listed.
    HelpDialog(const QWidget& shortcutsOf, QWidget* parent = nullptr);
    Q_DISABLE_COPY_MOVE(HelpDialog)

    void showPage(Page page, Language languageId);

    // The README as the program carries it.
    [[nodiscard]] static QString readMe();

private:
    void LanguageSelect(Language languageId);
    void fillShortcuts(Language languageId);
    void fillAlarms(Language languageId);

    const QWidget& shortcutsOf_;
    QTabWidget* TabHelp = nullptr;
    QLabel* LblReadMeNote = nullptr;
    QTextBrowser* TxtReadMe = nullptr;
    QTableWidget* GrdShortcuts = nullptr;
    QTableWidget* GrdAlarms = nullptr;
};

}  // namespace velora
