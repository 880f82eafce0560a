#include "gui/comtable/ComTblWindow.h"

#include "core/comtable/ComFile.h"
#include "core/comtable/ComTransfer.h"
#include "core/link/LinkEngine.h"
#include "core/shared/Global.h"
#include "core/shared/TextCatalogue.h"
#include "gui/shared/DriveLine.h"
#include "gui/shared/TableWindowKit.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include <algorithm>

namespace velora {

namespace {

constexpr int BoxWidth = 96;

// Grid column of a cell: velocity 1, ATC 2, torque 3 (column 0 holds the row headings).
int gridColumn(int k) {
    switch (ComTables::column(k)) {
        case ComTables::Column::Atc:
            return 2;
        case ComTables::Column::Torque:
            return 3;
        case ComTables::Column::Velocity:
        case ComTables::Column::None:
            break;
    }
    return 1;
}

}  // namespace

ComTblWindow::ComTblWindow(Global& global, LinkEngine& engine, ComTransfer& transfer,
                           QWidget* parent)
    : ChildWindow(QStringLiteral("ComTbl"), parent),
      global_(global),
      tables_(global.Com),
      engine_(engine),
      transfer_(transfer),
      edit_(global.Com),
      file_(new ComFile(engine, global.Com, this)) {
    new QVBoxLayout(this);  // owned by this window
    buildGrid();
    buildFoot();
    tablekit::setUpDockTimer(Timer1);
    connect(&Timer1, &QTimer::timeout, this, &ComTblWindow::Timer1_Timer);
    connectSources();
    showAllCells();
    for (int k = 0; k < ComTables::CellCount; ++k) {
        if (k != ComTables::NoCell)
            ResetComRow(k);
    }
    applyControls();
}

ComTblWindow::~ComTblWindow() = default;

void ComTblWindow::buildGrid() {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(4);
    grid->setVerticalSpacing(2);
    for (int i = 0; i < 4; ++i) {
        auto* label = new QLabel(this);
        label->setObjectName(QStringLiteral("Label%1").arg(i + 2));
        label->setAlignment(Qt::AlignCenter);
        grid->addWidget(label, 0, i);
        Labels[static_cast<std::size_t>(i)] = label;
    }
    for (int row = 0; row < RowCount; ++row) {
        auto* heading = new QLabel(QStringLiteral("No.%1").arg(row), this);
        heading->setObjectName(QStringLiteral("LabelComNo(%1)").arg(row));
        grid->addWidget(heading, row + 1, 0, Qt::AlignCenter);
        LabelComNo[static_cast<std::size_t>(row)] = heading;
    }
    for (int k = 0; k < ComTables::CellCount; ++k) {
        if (k == ComTables::NoCell)
            continue;
        auto* box = new QLineEdit(this);
        box->setObjectName(QStringLiteral("TextCom(%1)").arg(k));
        box->setFixedWidth(BoxWidth);
        box->installEventFilter(this);
        grid->addWidget(box, ComEdit::row(k) + 1, gridColumn(k), Qt::AlignCenter);
        TextCom[static_cast<std::size_t>(k)] = box;
    }
    static_cast<QVBoxLayout*>(layout())->addLayout(grid);
    static_cast<QVBoxLayout*>(layout())->addStretch(1);
}

void ComTblWindow::buildFoot() {
    LabelMarked = new QLabel(this);
    LabelMarked->setObjectName(QStringLiteral("LabelMarked"));
    layout()->addWidget(LabelMarked);
    driveLine_ = new DriveLine(tables_.Origin, engine_, this);
    layout()->addWidget(driveLine_);
    auto* row = new QHBoxLayout;
    tablekit::addButtons(this, row, Command, [this](int i) { Command_Click(i); });
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void ComTblWindow::connectSources() {
    connect(&transfer_, &ComTransfer::tableRefreshed, this, [this] {
        showAllCells();
        for (int k = 0; k < ComTables::CellCount; ++k) {
            if (k != ComTables::NoCell)
                ResetComRow(k);
        }
    });
    connect(&transfer_, &ComTransfer::cellRefreshed, this,
            [this](int k) { TextCom.at(static_cast<std::size_t>(k))->setText(edit_.text(k)); });
    connect(&transfer_, &ComTransfer::cellWritten, this, &ComTblWindow::ResetComRow);
    connect(&transfer_, &ComTransfer::tableRefreshed, driveLine_, &DriveLine::refresh);
    connect(file_, &ComFile::fileLoaded, driveLine_, &DriveLine::refresh);
    connect(&transfer_, &ComTransfer::transferFinished, this,
            [this] { Command[WriteServo]->setEnabled(false); });
    connect(file_, &ComFile::cellLoaded, this, [this](int k, const QString& shown, bool clamped) {
        TextCom.at(static_cast<std::size_t>(k))->setText(shown);
        paintCell(k, clamped ? TableColour::Edited : TableColour::Loaded);
    });
    connect(file_, &ComFile::fileLoaded, this, &ComTblWindow::applyControls);
}

void ComTblWindow::LanguageSelect(Language languageId) {
    showCaption();
    for (int i = 0; i < 4; ++i)
        Labels[static_cast<std::size_t>(i)]->setText(
            TextCatalogue::text(languageId, Text::ComTableComNo, i));
    // Each box is found by what a person sees: its row heading and its column heading.
    for (int k = 0; k < ComTables::CellCount; ++k) {
        if (k == ComTables::NoCell)
            continue;
        const QString heading =
            TextCatalogue::text(languageId, Text::ComTableComNo, gridColumn(k)).trimmed();
        TextCom[static_cast<std::size_t>(k)]->setAccessibleName(
            QStringLiteral("No.%1 %2").arg(ComEdit::row(k)).arg(heading));
    }
    for (int i = 0; i < ButtonCount; ++i)
        Command[static_cast<std::size_t>(i)]->setText(
            TextCatalogue::text(languageId, Text::ComTableWriteFile, i));
    tablekit::fitCountLine(LabelMarked,
                           TextCatalogue::text(languageId, Text::TableCellsMarkedWriting) +
                               QString::number(ComTables::CellCount));
    showMarks();
    driveLine_->refresh();
}

void ComTblWindow::showOrigin() {
    driveLine_->refresh();
}

void ComTblWindow::showCaption() {
    setWindowTitle(tablekit::fileCaption(
        TextCatalogue::text(global_.Link.LanguageId, Text::CaptionCommandTable), lastFile_));
}

void ComTblWindow::EnableControls(bool enable) {
    ChildWindow::EnableControls(enable);
    applyControls();
}

void ComTblWindow::DisableTransferButtons() {
    ChildWindow::DisableTransferButtons();
    tablekit::disableServoButtons(Command);
}

void ComTblWindow::applyControls() {
    const TableControls c = tableControls(controlsEnabled(), tables_.ComLoaded);
    for (QLineEdit* box : TextCom) {
        if (box)
            box->setEnabled(c.boxes);
    }
    tablekit::enableButtons(Command, c, transferButtonsEnabled());
}

void ComTblWindow::Command_Click(int index) {
    if (buttonGuard_ && !buttonGuard_(index))
        return;
    const tablekit::ButtonActions actions{
        QStringLiteral("Commands(*.sct)"),
        QStringLiteral("sct"),
        [this](const QString& path) { return file_->write(path); },
        [this](const QString& path) { return file_->read(path) == ComFile::ReadResult::Loaded; },
        [this] { transfer_.writeChanged(); },
        [this] { transfer_.readAll(); },
    };
    if (const std::optional<QString> path = tablekit::runButton(this, Command, index, actions))
        lastFile_ = *path;
    showCaption();
    showMarks();
}

void ComTblWindow::showAllCells() {
    for (int k = 0; k < ComTables::CellCount; ++k) {
        if (k != ComTables::NoCell)
            TextCom[static_cast<std::size_t>(k)]->setText(edit_.text(k));
    }
}

void ComTblWindow::paintCell(int k, TableColour colour) {
    tablekit::paint(TextCom.at(static_cast<std::size_t>(k)), colour);
    showMarks();
}

void ComTblWindow::ResetComRow(int k) {
    tables_.ComChanged.at(static_cast<std::size_t>(k)) = false;
    paintCell(k, restingColour(ComEdit::row(k)));
}

void ComTblWindow::showMarks() {
    LabelMarked->setText(
        TextCatalogue::text(global_.Link.LanguageId, Text::TableCellsMarkedWriting) +
        QString::number(tables_.changedCount()));
}

bool ComTblWindow::eventFilter(QObject* watched, QEvent* event) {
    const auto it = std::find(TextCom.cbegin(), TextCom.cend(), watched);
    if (it == TextCom.cend() || !*it)
        return ChildWindow::eventFilter(watched, event);
    const int k = static_cast<int>(it - TextCom.cbegin());
    if (const FieldKey key = tablekit::movementKey(event); key != FieldKey::Other) {
        onKey(k, key);
        return true;
    }
    if (!checking_ && tablekit::leavesBox(event))
        onLeave(k);
    return ChildWindow::eventFilter(watched, event);
}

void ComTblWindow::onKey(int k, FieldKey key) {
    onLeave(k);
    const QScopedValueRollback guard(checking_, true);
    TextCom.at(static_cast<std::size_t>(ComEdit::keyDown(k, key)))->setFocus(Qt::OtherFocusReason);
}

void ComTblWindow::onLeave(int k) {
    QLineEdit* box = TextCom.at(static_cast<std::size_t>(k));
    const FieldCheck check = edit_.leave(k, box->text());
    if (check.shown)
        box->setText(*check.shown);
    if (check.changed)
        paintCell(k, TableColour::Edited);
}

void ComTblWindow::showEvent(QShowEvent* event) {
    ChildWindow::showEvent(event);
    // The docking timer runs only while this window is the active one.
    tablekit::runWhileActive(this, Timer1, frameHooked_);
}

void ComTblWindow::Timer1_Timer() {
    if (global_.TablesJoined && partner_)
        tablekit::dock(this, partner_, false);
}

}  // namespace velora
