#include "gui/params/SprmTblWindow.h"

#include "core/params/ParamCatalogue.h"
#include "gui/shared/TableWindowKit.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace velora {

namespace {

// The captions are the same in every language.
constexpr Language CaptionLanguage = Language::Japanese;

}  // namespace

SprmTblWindow::SprmTblWindow(ParamTables& tables, QWidget* parent)
    : QWidget(parent), edit_(tables) {
    setObjectName(QStringLiteral("SprmTbl"));
    setWindowTitle(QStringLiteral("SystemParameter"));
    auto* column = new QVBoxLayout(this);
    SSTabSprm = new QTabWidget(this);
    SSTabSprm->setObjectName(QStringLiteral("SSTabSprm"));
    column->addWidget(SSTabSprm);
    for (int tab = 0; tab < SprmEdit::BoxCount / SprmEdit::BoxesPerTab; ++tab) {
        auto* page = new QWidget(SSTabSprm);
        auto* grid = new QGridLayout(page);
        for (int row = 0; row < SprmEdit::BoxesPerTab; ++row) {
            const int k = tab * SprmEdit::BoxesPerTab + row;
            const auto i = static_cast<std::size_t>(k);
            Label1[i] =
                new QLabel(ParamCatalogue::label(CaptionLanguage, SprmEdit::parameterOf(k)), page);
            Label1[i]->setObjectName(QStringLiteral("Label1(%1)").arg(k));
            TxtPrm[i] = new QLineEdit(page);
            TxtPrm[i]->setObjectName(QStringLiteral("TxtPrm(%1)").arg(k));
            TxtPrm[i]->setFixedWidth(110);
            TxtPrm[i]->installEventFilter(this);
            Label1[i]->setBuddy(TxtPrm[i]);
            grid->addWidget(Label1[i], row, 0);
            grid->addWidget(TxtPrm[i], row, 1);
        }
        grid->setColumnStretch(0, 1);
        const int first = SprmEdit::parameterOf(tab * SprmEdit::BoxesPerTab);
        SSTabSprm->addTab(
            page, QStringLiteral("%1 - %2").arg(first).arg(first + SprmEdit::BoxesPerTab - 1));
    }
    SSTabSprm->setCurrentIndex(0);
    showAllValues();
}

SprmTblWindow::~SprmTblWindow() = default;

void SprmTblWindow::showValue(int k) {
    TxtPrm.at(static_cast<std::size_t>(k))->setText(edit_.boxText(k));
}

void SprmTblWindow::showAllValues() {
    for (int k = 0; k < SprmEdit::BoxCount; ++k)
        showValue(k);
}

void SprmTblWindow::setBoxesEnabled(bool enable) {
    for (QLineEdit* box : TxtPrm)
        box->setEnabled(enable);
}

int SprmTblWindow::boxIndex(const QObject* object) const {
    const auto it = std::find(TxtPrm.cbegin(), TxtPrm.cend(), object);
    return it == TxtPrm.cend() ? -1 : static_cast<int>(it - TxtPrm.cbegin());
}

bool SprmTblWindow::eventFilter(QObject* watched, QEvent* event) {
    const int k = boxIndex(watched);
    if (k < 0)
        return QWidget::eventFilter(watched, event);
    if (const FieldKey key = tablekit::movementKey(event); key != FieldKey::Other) {
        onKey(k, key);
        return true;
    }
    if (tablekit::leavesBox(event))
        onLeave(k);
    return QWidget::eventFilter(watched, event);
}

void SprmTblWindow::onKey(int k, FieldKey key) {
    const KeyOutcome out = SprmEdit::keyDown(k, key);
    SSTabSprm->setCurrentIndex(out.tab);
    TxtPrm.at(static_cast<std::size_t>(out.focus))->setFocus(Qt::OtherFocusReason);
}

void SprmTblWindow::onLeave(int k) {
    const EditOutcome out = edit_.leave(k, TxtPrm.at(static_cast<std::size_t>(k))->text());
    for (const int refreshed : out.refreshed)
        showValue(refreshed);
}

void SprmTblWindow::closeEvent(QCloseEvent* event) {
    // Kept with its values for the next time the gesture opens it.
    event->ignore();
    if (auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget()))
        frame->hide();
    else
        hide();
}

void SprmTblWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    emit shownChanged(true);
}

void SprmTblWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    emit shownChanged(false);
}

}  // namespace velora
