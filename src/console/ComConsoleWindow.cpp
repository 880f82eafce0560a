#include "console/ComConsoleWindow.h"

#include "app/TextCatalogue.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

namespace velora {

ComConsoleWindow::ComConsoleWindow(QWidget* parent)
    : ChildWindow(QStringLiteral("ComConsole"), parent) {
    auto* form = new QFormLayout(this);
    for (int i = 0; i < 2; ++i) {
        Label1[i] = new QLabel(this);
        Label1[i]->setObjectName(QStringLiteral("Label1(%1)").arg(i));
        ComText[i] = new QLineEdit(this);
        ComText[i]->setObjectName(QStringLiteral("ComText(%1)").arg(i));
        ComText[i]->setReadOnly(true);
        Label1[i]->setBuddy(ComText[i]);
        form->addRow(Label1[i], ComText[i]);
    }
}

void ComConsoleWindow::LanguageSelect(int languageId) {
    setWindowTitle(TextCatalogue::text(languageId, 1051));
    Label1[0]->setText(TextCatalogue::text(languageId, 1100));
    Label1[1]->setText(TextCatalogue::text(languageId, 1101));
}

void ComConsoleWindow::EnableControls(bool enable) {
    ChildWindow::EnableControls(enable);
    consoleEnabled_ = enable;
}

void ComConsoleWindow::setComText(int index, const QString& text) {
    if (index == 0 || index == 1)
        ComText[static_cast<std::size_t>(index)]->setText(text);
}

QString ComConsoleWindow::comText(int index) const {
    return index == 0 || index == 1 ? ComText[static_cast<std::size_t>(index)]->text() : QString();
}

void ComConsoleWindow::disableConsole() {
    consoleEnabled_ = false;
}

}  // namespace velora
