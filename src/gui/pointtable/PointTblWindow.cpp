#include "gui/pointtable/PointTblWindow.h"

#include "core/link/LinkEngine.h"
#include "core/pointtable/PointFile.h"
#include "core/pointtable/PointTransfer.h"
#include "core/shared/Global.h"
#include "core/shared/TextCatalogue.h"
#include "gui/shared/DriveLine.h"
#include "gui/shared/TableWindowKit.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace velora {

namespace {

// Object names of the seven box arrays, in PointField order.
const char* const BoxNames[PointEdit::FieldCount] = {"TextPosTor",   "TextAbsInc",   "TextPosition",
                                                     "TextVelocity", "TextAccConst", "TextWaitTime",
                                                     "TextNextStart"};
// Widths in pixels: the position takes nine digits and a sign, the others a few digits.
constexpr int BoxWidths[PointEdit::FieldCount] = {44, 44, 96, 44, 44, 60, 44};

PointField fieldAt(int column) {
    return static_cast<PointField>(column);
}

}  // namespace

PointTblWindow::PointTblWindow(Global& global, LinkEngine& engine, PointTransfer& transfer,
                               QWidget* parent)
    : ChildWindow(QStringLiteral("PointTbl"), parent),
      global_(global),
      tables_(global.Points),
      engine_(engine),
      transfer_(transfer),
      edit_(global.Points),
      file_(new PointFile(engine, global.Points, this)) {
    auto* column = new QVBoxLayout(this);
    SSTabPntTbl = new QTabWidget(this);
    SSTabPntTbl->setObjectName(QStringLiteral("SSTabPntTbl"));
    column->addWidget(SSTabPntTbl, 1);
    for (int tab = 0; tab < TabCount; ++tab)
        buildTab(tab);
    keepTabsInSight();
    SSTabPntTbl->setCurrentIndex(0);
    buildFoot();
    tablekit::setUpDockTimer(Timer1);
    connect(&Timer1, &QTimer::timeout, this, &PointTblWindow::Timer1_Timer);
    connectSources();
    showAllPoints();
    for (int p = 0; p < PointTables::Count; ++p)
        ResetRow(p);
    applyControls();
}

PointTblWindow::~PointTblWindow() = default;

void PointTblWindow::keepTabsInSight() {
    // No scroll arrows that hide tabs: the window keeps room for the tab bar as wide as it gets
    // with every tab marked, so a mark neither pushes a tab out of sight nor widens the window.
    QTabBar* bar = SSTabPntTbl->tabBar();
    bar->setUsesScrollButtons(false);
    bar->setElideMode(Qt::ElideNone);
    std::vector<QString> captions;
    for (int tab = 0; tab < TabCount; ++tab) {
        captions.push_back(SSTabPntTbl->tabText(tab));
        SSTabPntTbl->setTabText(tab, tablekit::marked(captions.back(), true));
    }
    SSTabPntTbl->setMinimumWidth(SSTabPntTbl->minimumSizeHint().width());
    for (int tab = 0; tab < TabCount; ++tab)
        SSTabPntTbl->setTabText(tab, captions[static_cast<std::size_t>(tab)]);
}

void PointTblWindow::buildTab(int tab) {
    auto* page = new QWidget(SSTabPntTbl);
    auto* grid = new QGridLayout(page);
    grid->setHorizontalSpacing(2);
    grid->setVerticalSpacing(2);
    for (int k = 0; k <= PointEdit::FieldCount; ++k) {
        const int i = tab * PointEdit::PointsPerTab + k;
        auto* title = new QLabel(page);
        title->setObjectName(QStringLiteral("LabelTitle(%1)").arg(i));
        title->setWordWrap(true);
        title->setAlignment(Qt::AlignCenter);
        grid->addWidget(title, 0, k);
        LabelTitle[static_cast<std::size_t>(i)] = title;
    }
    for (int row = 0; row < PointEdit::PointsPerTab; ++row) {
        const int p = tab * PointEdit::PointsPerTab + row;
        const auto i = static_cast<std::size_t>(p);
        LabelPointNo[i] = new QLabel(QStringLiteral("Point%1").arg(p), page);
        LabelPointNo[i]->setObjectName(QStringLiteral("LabelPointNo(%1)").arg(p));
        grid->addWidget(LabelPointNo[i], row + 1, 0);
        for (int f = 0; f < PointEdit::FieldCount; ++f) {
            auto* box = new QLineEdit(page);
            box->setObjectName(QStringLiteral("%1(%2)").arg(QLatin1String(BoxNames[f])).arg(p));
            box->setFixedWidth(BoxWidths[f]);
            box->installEventFilter(this);
            grid->addWidget(box, row + 1, f + 1, Qt::AlignCenter);
            boxes_[i][static_cast<std::size_t>(f)] = box;
        }
        LabelPointNo[i]->setBuddy(boxes_[i][0]);
    }
    grid->setRowStretch(PointEdit::PointsPerTab + 1, 1);
    const int first = tab * PointEdit::PointsPerTab;
    SSTabPntTbl->addTab(page, QStringLiteral("%1 - %2").arg(first).arg(first + 7));
}

void PointTblWindow::buildFoot() {
    LabelMarked = new QLabel(this);
    LabelMarked->setObjectName(QStringLiteral("LabelMarked"));
    layout()->addWidget(LabelMarked);
    driveLine_ = new DriveLine(tables_.Origin, engine_, this);
    layout()->addWidget(driveLine_);
    auto* row = new QHBoxLayout;
    tablekit::addButtons(this, row, Command, [this](int i) { Command_Click(i); });
    CmdJoin = new QPushButton(this);
    CmdJoin->setObjectName(QStringLiteral("CmdJoin"));
    connect(CmdJoin, &QPushButton::clicked, this, &PointTblWindow::CmdJoin_Click);
    row->addSpacing(12);
    row->addWidget(CmdJoin);
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void PointTblWindow::connectSources() {
    connect(&transfer_, &PointTransfer::tableRefreshed, this, [this] {
        showAllPoints();
        for (int p = 0; p < PointTables::Count; ++p)
            ResetRow(p);
    });
    connect(&transfer_, &PointTransfer::pointRefreshed, this, [this](int p) {
        for (int f = 0; f < PointEdit::FieldCount; ++f)
            boxes_.at(static_cast<std::size_t>(p))[static_cast<std::size_t>(f)]->setText(
                edit_.text(p, fieldAt(f)));
    });
    connect(&transfer_, &PointTransfer::pointWritten, this, &PointTblWindow::ResetRow);
    connect(&transfer_, &PointTransfer::tableRefreshed, driveLine_, &DriveLine::refresh);
    connect(file_, &PointFile::fileLoaded, driveLine_, &DriveLine::refresh);
    connect(&transfer_, &PointTransfer::transferFinished, this,
            [this] { Command[WriteServo]->setEnabled(false); });
    connect(
        file_, &PointFile::fieldLoaded, this,
        [this](int p, PointField field, const QString& shown, bool clamped) {
            boxes_.at(static_cast<std::size_t>(p))[static_cast<std::size_t>(field)]->setText(shown);
            if (clamped)
                MarkEdited(p);
        });
    connect(file_, &PointFile::pointLoaded, this, &PointTblWindow::MarkLoaded);
    connect(file_, &PointFile::fileLoaded, this, &PointTblWindow::applyControls);
}

void PointTblWindow::LanguageSelect(Language languageId) {
    setWindowTitle(TextCatalogue::text(languageId, Text::CaptionPointTable));
    showCaption();
    for (int i = 0; i < PointTables::Count; ++i)
        LabelTitle[static_cast<std::size_t>(i)]->setText(
            TextCatalogue::text(languageId, Text::PointTablePointNo, i % PointEdit::PointsPerTab));
    // Each box is found by what a person sees: its row heading and its column heading.
    for (int p = 0; p < PointTables::Count; ++p) {
        for (int f = 0; f < PointEdit::FieldCount; ++f) {
            boxes_[static_cast<std::size_t>(p)][static_cast<std::size_t>(f)]->setAccessibleName(
                QStringLiteral("Point%1 %2")
                    .arg(p)
                    .arg(TextCatalogue::text(languageId, Text::PointTablePosTor, f).trimmed()));
        }
    }
    for (int i = 0; i < ButtonCount; ++i)
        Command[static_cast<std::size_t>(i)]->setText(
            TextCatalogue::text(languageId, Text::PointTableWriteFile, i));
    CmdJoin->setText(TextCatalogue::text(languageId, global_.TablesJoined
                                                         ? Text::PointTableSeparateTable
                                                         : Text::PointTableJoinComTable));
    tablekit::fitCountLine(LabelMarked,
                           TextCatalogue::text(languageId, Text::TablePointsMarkedWriting) +
                               QString::number(PointTables::Count));
    markedShown_ = -1;
    showMarks();
    driveLine_->refresh();
}

void PointTblWindow::showOrigin() {
    driveLine_->refresh();
}

void PointTblWindow::showCaption() {
    setWindowTitle(tablekit::fileCaption(
        TextCatalogue::text(global_.Link.LanguageId, Text::CaptionPointTable), lastFile_));
}

void PointTblWindow::EnableControls(bool enable) {
    ChildWindow::EnableControls(enable);
    applyControls();
}

void PointTblWindow::DisableTransferButtons() {
    ChildWindow::DisableTransferButtons();
    tablekit::disableServoButtons(Command);
}

void PointTblWindow::applyControls() {
    const TableControls c = tableControls(controlsEnabled(), tables_.PointTableValid);
    for (const auto& row : boxes_) {
        for (QLineEdit* box : row)
            box->setEnabled(c.boxes);
    }
    tablekit::enableButtons(Command, c, transferButtonsEnabled());
}

void PointTblWindow::Command_Click(int index) {
    if (buttonGuard_ && !buttonGuard_(index))
        return;
    const tablekit::ButtonActions actions{
        QStringLiteral("Point Table Data(*.tbl)"),
        QStringLiteral("tbl"),
        [this](const QString& path) { return file_->WritePointFile(path); },
        [this](const QString& path) {
            return file_->ReadPointFile(path) == PointFile::ReadResult::Loaded;
        },
        [this] { transfer_.WriteChangedPoints(); },
        [this] { transfer_.ReadAllPoints(); },
    };
    if (const std::optional<QString> path = tablekit::runButton(this, Command, index, actions))
        lastFile_ = *path;
    showCaption();
    showMarks();
}

void PointTblWindow::CmdJoin_Click() {
    setJoined(!global_.TablesJoined);
}

void PointTblWindow::setJoined(bool joined) {
    global_.TablesJoined = joined;
    CmdJoin->setText(
        TextCatalogue::text(global_.Link.LanguageId,
                            joined ? Text::PointTableSeparateTable : Text::PointTableJoinComTable));
}

void PointTblWindow::showAllPoints() {
    for (int p = 0; p < PointTables::Count; ++p) {
        for (int f = 0; f < PointEdit::FieldCount; ++f)
            boxes_[static_cast<std::size_t>(p)][static_cast<std::size_t>(f)]->setText(
                edit_.text(p, fieldAt(f)));
    }
}

void PointTblWindow::paintRow(int point, TableColour colour) {
    const auto i = static_cast<std::size_t>(point);
    // Repainting only what changes keeps a whole-table update cheap.
    if (rowColour_[i] == colour && LabelPointNo[i]->autoFillBackground())
        return;
    rowColour_[i] = colour;
    tablekit::paint(LabelPointNo[i], colour);
    for (QLineEdit* box : boxes_[i])
        tablekit::paint(box, colour);
}

void PointTblWindow::MarkEdited(int point) {
    tables_.PointChanged.at(static_cast<std::size_t>(point)) = true;
    paintRow(point, TableColour::Edited);
    showMarks();
}

void PointTblWindow::MarkLoaded(int point) {
    tables_.PointChanged.at(static_cast<std::size_t>(point)) = true;
    paintRow(point, TableColour::Loaded);
    showMarks();
}

void PointTblWindow::ResetRow(int point) {
    tables_.PointChanged.at(static_cast<std::size_t>(point)) = false;
    paintRow(point, restingColour(point));
    showMarks();
}

void PointTblWindow::showMarks() {
    // Only what changed is set again: a tab bar relayout per edited box would make editing the
    // whole table slow.
    for (int tab = 0; tab < TabCount; ++tab) {
        const int first = tab * PointEdit::PointsPerTab;
        bool edited = false;
        for (int p = first; p < first + PointEdit::PointsPerTab; ++p)
            edited = edited || tables_.PointChanged[static_cast<std::size_t>(p)];
        auto& shown = tabMarked_[static_cast<std::size_t>(tab)];
        if (shown && *shown == edited)
            continue;
        shown = edited;
        SSTabPntTbl->setTabText(
            tab, tablekit::marked(QStringLiteral("%1 - %2").arg(first).arg(first + 7), edited));
    }
    const int count = tables_.changedCount();
    if (count == markedShown_)
        return;
    markedShown_ = count;
    LabelMarked->setText(
        TextCatalogue::text(global_.Link.LanguageId, Text::TablePointsMarkedWriting) +
        QString::number(count));
}

bool PointTblWindow::eventFilter(QObject* watched, QEvent* event) {
    const auto* box = qobject_cast<const QLineEdit*>(watched);
    if (!box || (event->type() != QEvent::KeyPress && event->type() != QEvent::FocusOut))
        return ChildWindow::eventFilter(watched, event);
    for (int p = 0; p < PointTables::Count; ++p) {
        const auto& row = boxes_[static_cast<std::size_t>(p)];
        const auto it = std::find(row.cbegin(), row.cend(), box);
        if (it == row.cend())
            continue;
        const int f = static_cast<int>(it - row.cbegin());
        if (const FieldKey key = tablekit::movementKey(event); key != FieldKey::Other) {
            onKey(p, f, key);
            return true;
        }
        if (!checking_ && tablekit::leavesBox(event))
            onLeave(p, f);
        break;
    }
    return ChildWindow::eventFilter(watched, event);
}

void PointTblWindow::onKey(int point, int field, FieldKey key) {
    const PointEdit::Move move = PointEdit::keyDown(point, key);
    // Leaving the box checks it before the tab changes under it.
    onLeave(point, field);
    const QScopedValueRollback guard(checking_, true);
    SSTabPntTbl->setCurrentIndex(move.tab);
    boxes_.at(static_cast<std::size_t>(move.point))[static_cast<std::size_t>(field)]->setFocus(
        Qt::OtherFocusReason);
}

void PointTblWindow::onLeave(int point, int field) {
    QLineEdit* box = boxes_.at(static_cast<std::size_t>(point))[static_cast<std::size_t>(field)];
    const FieldCheck check = edit_.leave(point, fieldAt(field), box->text());
    if (check.shown)
        box->setText(*check.shown);
    if (check.changed)
        MarkEdited(point);
}

void PointTblWindow::resizeEvent(QResizeEvent* event) {
    ChildWindow::resizeEvent(event);
    // Resizing by hand ends the docking: the other window would no longer fit beside it.
    if (global_.TablesJoined)
        setJoined(false);
}

void PointTblWindow::closeEvent(QCloseEvent* event) {
    setJoined(false);
    ChildWindow::closeEvent(event);
}

void PointTblWindow::showEvent(QShowEvent* event) {
    ChildWindow::showEvent(event);
    // The docking timer runs only while this window is the active one.
    tablekit::runWhileActive(this, Timer1, frameHooked_);
}

void PointTblWindow::Timer1_Timer() {
    if (global_.TablesJoined && partner_)
        tablekit::dock(this, partner_, true);
}

}  // namespace velora
