#include "app/MainWindow.h"

#include "shared/Global.h"
#include "app/TextCatalogue.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QStatusBar>
#include <QWidget>

namespace velora {

MainWindow::MainWindow(Global& global, QWidget* parent) : QMainWindow(parent), global_(global) {
    setObjectName(QStringLiteral("MDIParent"));
    const int lang = global_.Link.LanguageId;
    auto* central = new QWidget(this);
    auto* form = new QFormLayout(central);
    for (int i = 0; i < 2; ++i) {
        comText_[i] = new QLineEdit(central);
        comText_[i]->setReadOnly(true);
        comText_[i]->setObjectName(QStringLiteral("ComText(%1)").arg(i));
        auto* label = new QLabel(TextCatalogue::text(lang, i == 0 ? 1100 : 1101), central);
        label->setBuddy(comText_[i]);
        form->addRow(label, comText_[i]);
    }
    setCentralWidget(central);

    lblCom_ = new QLabel(TextCatalogue::text(lang, 1603), this);
    lblCom_->setObjectName(QStringLiteral("LblCom"));
    lblCom_->setAutoFillBackground(true);
    lblCom_->setMargin(2);
    setComIndicator(false);
    lblDateTime_ = new QLabel(this);
    lblDateTime_->setObjectName(QStringLiteral("LblDateTime"));
    statusBar()->addPermanentWidget(lblCom_);
    statusBar()->addPermanentWidget(lblDateTime_);
    resize(640, 200);
    updateCaption();
}

void MainWindow::setSimulatedDevice(const QString& device) {
    simulatedDevice_ = device;
    updateCaption();
}

void MainWindow::updateCaption() {
    QString caption = TextCatalogue::text(global_.Link.LanguageId, 1020);
    if (!simulatedDevice_.isEmpty()) {
        caption += QStringLiteral(" \u2014 simulated drive (%1)").arg(simulatedDevice_);
    }
    setWindowTitle(caption);
}

void MainWindow::EnableControls(bool) {
}

void MainWindow::showError(const QString& text, const QString& caption) {
    QMessageBox::critical(this, caption, text);
}

bool MainWindow::askRetry(const QString& text, const QString& caption) {
    return QMessageBox::critical(this, caption, text, QMessageBox::Retry | QMessageBox::Cancel) ==
           QMessageBox::Retry;
}

void MainWindow::showNotice(const QString& text, const QString& caption) {
    QMessageBox::information(this, caption, text);
}

void MainWindow::setComText(int index, const QString& text) {
    if (index == 0 || index == 1)
        comText_[index]->setText(text);
}

void MainWindow::setClock(const QDateTime& now) {
    const QLocale locale;
    lblDateTime_->setText(locale.toString(now.date(), QLocale::ShortFormat) + QStringLiteral("  ") +
                          locale.toString(now.time(), QLocale::ShortFormat));
}

void MainWindow::setComIndicator(bool live) {
    QPalette palette = lblCom_->palette();
    palette.setColor(QPalette::Window, live ? Qt::red : Qt::black);
    palette.setColor(QPalette::WindowText, Qt::white);
    lblCom_->setPalette(palette);
}

}  // namespace velora
