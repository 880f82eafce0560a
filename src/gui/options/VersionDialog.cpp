#include "gui/options/VersionDialog.h"

#include "core/shared/LinkState.h"
#include "core/shared/TextCatalogue.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QShowEvent>

namespace velora {

namespace {

QLabel* makeLabel(QWidget* parent, const QString& name, const QString& text = QString()) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    return label;
}

}  // namespace

VersionDialog::VersionDialog(const LinkState& state, QWidget* parent)
    : QDialog(parent), state_(state) {
    setObjectName(QStringLiteral("Version"));
    setWindowModality(Qt::ApplicationModal);
    auto* grid = new QGridLayout(this);
    grid->setHorizontalSpacing(16);

    QLabel* Label1 = makeLabel(this, QStringLiteral("Label1"), QStringLiteral("Velora"));
    QFont nameFont = Label1->font();
    nameFont.setPointSizeF(nameFont.pointSizeF() * 1.6);
    nameFont.setBold(true);
    Label1->setFont(nameFont);
    Label2 = makeLabel(this, QStringLiteral("Label2"));
    QLabel* LblVer = makeLabel(this, QStringLiteral("LblVer"), formatVersion(SoftwareVersion));
    Label5 = makeLabel(this, QStringLiteral("Label5"));
    LblOrvixK7Ver = makeLabel(this, QStringLiteral("LblOrvixK7Ver"));
    Label3 = makeLabel(this, QStringLiteral("Label3"));
    Label2->setBuddy(LblVer);
    Label5->setBuddy(LblOrvixK7Ver);
    auto* CmdOk = new QPushButton(QStringLiteral("OK"), this);
    CmdOk->setObjectName(QStringLiteral("CmdOk"));
    CmdOk->setDefault(true);
    connect(CmdOk, &QPushButton::clicked, this, &QDialog::hide);

    grid->addWidget(Label1, 0, 0, 1, 2);
    grid->addWidget(Label2, 1, 0);
    grid->addWidget(LblVer, 1, 1);
    grid->addWidget(Label5, 2, 0);
    grid->addWidget(LblOrvixK7Ver, 2, 1);
    grid->addWidget(Label3, 3, 0, 1, 2);
    grid->addWidget(CmdOk, 4, 1, Qt::AlignRight);
}

void VersionDialog::LanguageSelect(Language languageId) {
    setWindowTitle(TextCatalogue::text(languageId, Text::CaptionVersion));
    Label2->setText(TextCatalogue::text(languageId, Text::VersionPcSoftware));
    Label3->setText(TextCatalogue::text(languageId, Text::VersionCopyright));
    Label5->setText(TextCatalogue::text(languageId, Text::VersionDriveSoftware));
}

QString VersionDialog::formatVersion(int versionTimes100) {
    return QString::number(versionTimes100 / 100.0, 'f', 2);
}

void VersionDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous())
        return;
    LanguageSelect(state_.LanguageId);
    LblOrvixK7Ver->setText(formatVersion(state_.DriverVersion));
}

}  // namespace velora
