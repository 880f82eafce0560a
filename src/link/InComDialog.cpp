#include "link/InComDialog.h"

#include "app/TextCatalogue.h"
#include "shared/LinkState.h"

#include <QCloseEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace velora {

InComDialog::InComDialog(const LinkState& state, QWidget* parent) : QDialog(parent), state_(state) {
    setObjectName(QStringLiteral("InCOMDialog"));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setWindowModality(Qt::ApplicationModal);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 16, 24, 16);
    Label1 = new QLabel(this);
    Label1->setObjectName(QStringLiteral("Label1"));
    Label1->setAlignment(Qt::AlignCenter);
    layout->addWidget(Label1);
}

void InComDialog::LanguageSelect(int languageId) {
    setWindowTitle(TextCatalogue::text(languageId, 1804));
    Label1->setText(TextCatalogue::text(languageId, 1805));
}

void InComDialog::showBusy() {
    LanguageSelect(state_.LanguageId);
    adjustSize();
    if (const QWidget* owner = parentWidget()) {
        move(owner->mapToGlobal(owner->rect().center()) - rect().center());
    }
    show();
    raise();
}

void InComDialog::closeEvent(QCloseEvent* event) {
    event->ignore();
}

}  // namespace velora
