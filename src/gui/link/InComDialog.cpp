#include "gui/link/InComDialog.h"

#include "core/shared/LinkState.h"
#include "core/shared/TextCatalogue.h"

#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
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
    LabelActivity = new QLabel(this);
    LabelActivity->setObjectName(QStringLiteral("LabelActivity"));
    LabelActivity->setAlignment(Qt::AlignCenter);
    // Wide enough for the longest line, so that the dialog does not jump as the count runs.
    LabelActivity->setMinimumWidth(LabelActivity->fontMetrics().averageCharWidth() * 56);
    layout->addWidget(LabelActivity);
    CmdCancel = new QPushButton(this);
    CmdCancel->setObjectName(QStringLiteral("CmdCancel"));
    layout->addWidget(CmdCancel, 0, Qt::AlignCenter);
    connect(CmdCancel, &QPushButton::clicked, this, &InComDialog::cancelRequested);
    activityTimer_.setInterval(ActivityIntervalMs);
    connect(&activityTimer_, &QTimer::timeout, this, &InComDialog::showActivity);
}

void InComDialog::LanguageSelect(Language languageId) {
    setWindowTitle(TextCatalogue::text(languageId, Text::LinkComLabel));
    Label1->setText(TextCatalogue::text(languageId, Text::LinkCommunicating));
    CmdCancel->setText(TextCatalogue::text(languageId, Text::CommSettingsCancel));
}

void InComDialog::setActivity(std::function<void()> begin, std::function<QString()> text) {
    begin_ = std::move(begin);
    activity_ = std::move(text);
}

void InComDialog::showBusy() {
    LanguageSelect(state_.LanguageId);
    if (begin_)
        begin_();
    showActivity();
    adjustSize();
    if (const QWidget* owner = parentWidget()) {
        move(owner->mapToGlobal(owner->rect().center()) - rect().center());
    }
    show();
    raise();
    activityTimer_.start();
}

void InComDialog::hideBusy() {
    activityTimer_.stop();
    hide();
}

void InComDialog::showActivity() {
    const QString text = activity_ ? activity_() : QString();
    if (text == LabelActivity->text())
        return;
    LabelActivity->setText(text);
    // A longer line (a longer device name, more digits) widens the dialog; it never shrinks
    // while shown, so that it does not jump as the count runs.
    if (isVisible() && sizeHint().width() > width()) {
        const QPoint centre = geometry().center();
        adjustSize();
        move(centre - rect().center());
    }
}

void InComDialog::closeEvent(QCloseEvent* event) {
    event->ignore();
}

}  // namespace velora
