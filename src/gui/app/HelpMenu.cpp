#include "gui/app/HelpMenu.h"

#include "core/shared/TextCatalogue.h"
#include "gui/app/HelpDialog.h"

#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace velora {

HelpMenu::HelpMenu(QMainWindow& window, std::function<void()> showVersion,
                   std::function<Language()> languageId)
    : QObject(&window) {
    setObjectName(QStringLiteral("HelpMenu"));
    dialog_ = new HelpDialog(window, &window);
    mnuHelp = window.menuBar()->addMenu(QString());
    mnuHelp->setObjectName(QStringLiteral("mnuHelp"));
    for (int i = 0; i < static_cast<int>(mnuHelpItem.size()); ++i) {
        if (i == 3)
            mnuHelp->addSeparator();
        QAction* item = mnuHelp->addAction(QString());
        item->setObjectName(QStringLiteral("mnuHelpItem(%1)").arg(i));
        mnuHelpItem[static_cast<std::size_t>(i)] = item;
        if (i == 3) {
            connect(item, &QAction::triggered, this, showVersion);
            continue;
        }
        connect(item, &QAction::triggered, this, [this, i, languageId] {
            dialog_->showPage(static_cast<HelpDialog::Page>(i), languageId());
        });
    }
    mnuHelpItem[0]->setShortcut(QKeySequence::HelpContents);
}

void HelpMenu::LanguageSelect(Language languageId) {
    mnuHelp->setTitle(TextCatalogue::text(languageId, Text::HelpMenu));
    mnuHelpItem[0]->setText(TextCatalogue::text(languageId, Text::HelpMenuReadMe));
    mnuHelpItem[1]->setText(TextCatalogue::text(languageId, Text::HelpMenuKeyboardShortcuts));
    mnuHelpItem[2]->setText(TextCatalogue::text(languageId, Text::HelpMenuAlarmCodes));
    mnuHelpItem[3]->setText(TextCatalogue::text(languageId, Text::MenuVersionInformation));
    // Shown again in the new language if it is open.
    if (dialog_->isVisible())
        dialog_->showPage(HelpDialog::Page::ReadMe, languageId);
}

}  // namespace velora
