#include "gui/connect/ConnectionCheckDialog.h"

#include "core/link/LinkEngine.h"
#include "core/shared/LinkState.h"
#include "core/shared/TextCatalogue.h"

#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShowEvent>
#include <QVBoxLayout>

namespace velora {

ConnectionCheckDialog::ConnectionCheckDialog(LinkEngine& engine, QWidget* parent)
    : QDialog(parent), engine_(engine) {
    setObjectName(QStringLiteral("ConnectionCheck"));
    setWindowModality(Qt::ApplicationModal);
    auto* column = new QVBoxLayout(this);
    TxtFindings = new QPlainTextEdit(this);
    TxtFindings->setObjectName(QStringLiteral("TxtFindings"));
    TxtFindings->setReadOnly(true);
    column->addWidget(TxtFindings);
    auto* buttons = new QHBoxLayout;
    const auto button = [this, buttons](const QString& name) {
        auto* b = new QPushButton(this);
        b->setObjectName(name);
        buttons->addWidget(b);
        return b;
    };
    CmdCheckAgain = button(QStringLiteral("CmdCheckAgain"));
    CmdCheckSearch = button(QStringLiteral("CmdCheckSearch"));
    buttons->addStretch(1);
    CmdCheckClose = button(QStringLiteral("CmdCheckClose"));
    column->addLayout(buttons);
    CmdCheckSearch->hide();
    connect(CmdCheckAgain, &QPushButton::clicked, this, &ConnectionCheckDialog::runCheck);
    connect(CmdCheckClose, &QPushButton::clicked, this, &QDialog::accept);
    connect(CmdCheckSearch, &QPushButton::clicked, this, [this] {
        accept();
        emit searchRequested();
    });
    // Fits a 1024x768 screen with room for the longest findings on two lines.
    resize(760, 360);
}

void ConnectionCheckDialog::LanguageSelect(Language languageId) {
    setWindowTitle(TextCatalogue::text(languageId, Text::CaptionConnectionCheck));
    TxtFindings->setAccessibleName(TextCatalogue::text(languageId, Text::CaptionConnectionCheck));
    CmdCheckAgain->setText(TextCatalogue::text(languageId, Text::CheckRunAgain));
    CmdCheckSearch->setText(TextCatalogue::text(languageId, Text::CommSettingsSearch));
    CmdCheckClose->setText(TextCatalogue::text(languageId, Text::CheckClose));
}

void ConnectionCheckDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous())
        return;
    LanguageSelect(engine_.state().LanguageId);
    runCheck();
}

void ConnectionCheckDialog::runCheck() {
    LinkState& s = engine_.state();
    const Language lang = s.LanguageId;
    TxtFindings->setPlainText(TextCatalogue::text(lang, Text::CheckCheckingConnection));
    CmdCheckSearch->hide();
    for (QPushButton* b : {CmdCheckAgain, CmdCheckClose})
        b->setEnabled(false);

    CheckTarget target;
    target.device = engine_.device();
    target.axis = s.AxisNumber;
    target.baud = s.baudRateValue() > 0 ? s.baudRateValue() : 9600;
    // Our own hold on the port would read as "busy", and the line test needs the port.
    engine_.pauseTimer1();
    const bool wasOpen = s.run().PortOpen && engine_.transport() && engine_.transport()->isOpen();
    if (wasOpen)
        engine_.transport()->close();
    const QList<Finding> findings = check_.run(target);
    if (wasOpen)
        engine_.reopen();
    engine_.resumeTimer1();

    QStringList lines;
    for (const Finding& finding : findings)
        lines << finding.line(lang);
    TxtFindings->setPlainText(lines.join(QLatin1Char('\n')));
    CmdCheckSearch->setVisible(ConnectionCheck::driveSilent(findings) && s.Online);
    for (QPushButton* b : {CmdCheckAgain, CmdCheckClose})
        b->setEnabled(true);
}

}  // namespace velora
