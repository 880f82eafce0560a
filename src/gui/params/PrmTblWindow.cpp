#include "gui/params/PrmTblWindow.h"

#include "core/link/LinkEngine.h"
#include "core/params/ParamCatalogue.h"
#include "core/params/ParamFile.h"
#include "core/params/ParamGuide.h"
#include "core/params/ParamTransfer.h"
#include "core/shared/Global.h"
#include "core/shared/TextCatalogue.h"
#include "gui/params/SprmTblWindow.h"
#include "gui/shared/DriveLine.h"
#include "gui/shared/MessageBoxes.h"
#include "gui/shared/TableWindowKit.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace velora {

namespace {

// How far the system parameter window opens below and to the right of this one.
constexpr QPoint SystemWindowOffset{30, 30};

QMessageBox::StandardButtons buttonsOf(CautionButtons buttons) {
    switch (buttons) {
        case CautionButtons::OkCancel:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case CautionButtons::YesNo:
            return QMessageBox::Yes | QMessageBox::No;
        case CautionButtons::Ok:
            break;
    }
    return QMessageBox::Ok;
}

// Enter must not keep a choice the user may regret: a Yes/No caution defaults to No.
QMessageBox::StandardButton defaultOf(CautionButtons buttons) {
    return buttons == CautionButtons::YesNo ? QMessageBox::No : QMessageBox::NoButton;
}

}  // namespace

PrmTblWindow::PrmTblWindow(Global& global, LinkEngine& engine, ParamTransfer& transfer,
                           MessageBoxes& boxes, QWidget* parent)
    : ChildWindow(QStringLiteral("PrmTbl"), parent),
      global_(global),
      engine_(engine),
      transfer_(transfer),
      boxes_(boxes),
      edit_(global),
      file_(new ParamFile(engine, transfer, global.Params, this)) {
    auto* column = new QVBoxLayout(this);
    buildFilter();
    SSTabPrm = new QTabWidget(this);
    SSTabPrm->setObjectName(QStringLiteral("SSTabPrm"));
    column->addWidget(SSTabPrm, 1);
    buildTabs();
    driveLine_ = new DriveLine(global.Params.Origin, engine, this);
    column->addWidget(driveLine_);
    LabelMarked = new QLabel(this);
    LabelMarked->setObjectName(QStringLiteral("LabelMarked"));
    column->addWidget(LabelMarked);
    buildButtons();
    // Its own window until the gesture first places it beside this one. Made after the tabs,
    // so that a search by name below this window meets this window's boxes first.
    sprm_ = new SprmTblWindow(global.Params, this);
    sprm_->setWindowFlag(Qt::Window);
    sprm_->hide();
    connectSources();
    showAllValues();
    applyControls();
}

PrmTblWindow::~PrmTblWindow() = default;

void PrmTblWindow::buildTabs() {
    int unitLabels = 0;
    for (int tab = 0; tab < PrmEdit::BoxCount / PrmEdit::BoxesPerTab; ++tab) {
        // A page scrolls rather than holding the window taller than a small screen allows.
        auto* scroll = new QScrollArea(SSTabPrm);
        scroll->setWidgetResizable(true);
        scroll->setFrameShape(QFrame::NoFrame);
        auto* page = new QWidget(scroll);
        auto* grid = new QGridLayout(page);
        for (int row = 0; row < PrmEdit::BoxesPerTab; ++row) {
            const int n = tab * PrmEdit::BoxesPerTab + row;
            const auto i = static_cast<std::size_t>(n);
            Label1[i] = new QLabel(page);
            Label1[i]->setObjectName(QStringLiteral("Label1(%1)").arg(n));
            TxtPrm[i] = new QLineEdit(page);
            TxtPrm[i]->setObjectName(QStringLiteral("TxtPrm(%1)").arg(n));
            TxtPrm[i]->setFixedWidth(110);
            TxtPrm[i]->installEventFilter(this);
            Label1[i]->setBuddy(TxtPrm[i]);
            grid->addWidget(Label1[i], row, 0);
            grid->addWidget(TxtPrm[i], row, 1);
            if (ParamCatalogue::unit(n) != ParamCatalogue::Unit::None) {
                auto* unit = new QLabel(page);
                unit->setObjectName(QStringLiteral("Label2(%1)").arg(unitLabels++));
                grid->addWidget(unit, row, 2);
                Label2.append({n, unit});
            }
        }
        grid->setColumnStretch(0, 1);
        grid->setColumnMinimumWidth(2, 70);
        grid->setRowStretch(PrmEdit::BoxesPerTab, 1);
        scroll->setWidget(page);
        scroll->setMinimumHeight(page->sizeHint().height() / 3);
        const int first = tab * PrmEdit::BoxesPerTab;
        SSTabPrm->addTab(scroll,
                         QStringLiteral("%1 - %2")
                             .arg(first, 2, 10, QLatin1Char('0'))
                             .arg(first + PrmEdit::BoxesPerTab - 1, 2, 10, QLatin1Char('0')));
    }
    SSTabPrm->setCurrentIndex(0);
}

void PrmTblWindow::buildFilter() {
    auto* row = new QHBoxLayout;
    LblPrmFilter = new QLabel(this);
    LblPrmFilter->setObjectName(QStringLiteral("LblPrmFilter"));
    TxtPrmFilter = new QLineEdit(this);
    TxtPrmFilter->setObjectName(QStringLiteral("TxtPrmFilter"));
    TxtPrmFilter->setClearButtonEnabled(true);
    LblPrmFilter->setBuddy(TxtPrmFilter);
    ChkChangedOnly = new QCheckBox(this);
    ChkChangedOnly->setObjectName(QStringLiteral("ChkChangedOnly"));
    row->addWidget(LblPrmFilter);
    row->addWidget(TxtPrmFilter, 1);
    row->addWidget(ChkChangedOnly);
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
    connect(TxtPrmFilter, &QLineEdit::textChanged, this, &PrmTblWindow::applyFilter);
    connect(ChkChangedOnly, &QCheckBox::toggled, this, &PrmTblWindow::applyFilter);
}

bool PrmTblWindow::rowShown(int n) const {
    if (ChkChangedOnly->isChecked() && !global_.Params.ParamChanged[static_cast<std::size_t>(n)])
        return false;
    return paramguide::matches(global_.Link.LanguageId, n, TxtPrmFilter->text());
}

void PrmTblWindow::applyFilter() {
    for (int tab = 0; tab < SSTabPrm->count(); ++tab) {
        bool any = false;
        for (int n = tab * PrmEdit::BoxesPerTab; n < (tab + 1) * PrmEdit::BoxesPerTab; ++n) {
            const bool shown = rowShown(n);
            any = any || shown;
            const auto i = static_cast<std::size_t>(n);
            Label1[i]->setVisible(shown);
            TxtPrm[i]->setVisible(shown);
        }
        SSTabPrm->setTabVisible(tab, any);
    }
    for (const auto& [n, unit] : Label2)
        unit->setVisible(!TxtPrm[static_cast<std::size_t>(n)]->isHidden());
    if (!SSTabPrm->isTabVisible(SSTabPrm->currentIndex())) {
        for (int tab = 0; tab < SSTabPrm->count(); ++tab) {
            if (SSTabPrm->isTabVisible(tab)) {
                SSTabPrm->setCurrentIndex(tab);
                break;
            }
        }
    }
}

void PrmTblWindow::showMarks() {
    const ParamTables& p = global_.Params;
    for (int tab = 0; tab < static_cast<int>(tabMarked_.size()); ++tab) {
        bool edited = false;
        for (int n = tab * PrmEdit::BoxesPerTab; n < (tab + 1) * PrmEdit::BoxesPerTab; ++n)
            edited = edited || p.ParamChanged[static_cast<std::size_t>(n)];
        auto& shown = tabMarked_[static_cast<std::size_t>(tab)];
        if (shown == edited && markedShown_ >= 0)
            continue;
        shown = edited;
        const int first = tab * PrmEdit::BoxesPerTab;
        SSTabPrm->setTabText(tab, tablekit::marked(QStringLiteral("%1 - %2")
                                                       .arg(first, 2, 10, QLatin1Char('0'))
                                                       .arg(first + PrmEdit::BoxesPerTab - 1, 2, 10,
                                                            QLatin1Char('0')),
                                                   edited));
    }
    const int count =
        static_cast<int>(std::count(p.ParamChanged.cbegin(), p.ParamChanged.cend(), true));
    if (count != markedShown_) {
        markedShown_ = count;
        LabelMarked->setText(
            TextCatalogue::text(global_.Link.LanguageId, Text::ParamParametersMarkedWriting) +
            QString::number(count));
    }
    if (ChkChangedOnly->isChecked())
        applyFilter();
}

void PrmTblWindow::showCaption() {
    setWindowTitle(tablekit::fileCaption(
        TextCatalogue::text(global_.Link.LanguageId, Text::CaptionParameter), lastFile_));
}

void PrmTblWindow::buildButtons() {
    auto* row = new QHBoxLayout;
    for (int i = 0; i < ButtonCount; ++i) {
        auto* button = new QPushButton(this);
        button->setObjectName(QStringLiteral("Command(%1)").arg(i));
        connect(button, &QPushButton::clicked, this, [this, i] { Command_Click(i); });
        row->addWidget(button);
        Command[static_cast<std::size_t>(i)] = button;
    }
    // The system parameter window opens by a gesture over Write File.
    Command[WriteFile]->installEventFilter(this);
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void PrmTblWindow::connectSources() {
    connect(&transfer_, &ParamTransfer::valuesRefreshed, this, [this] {
        showAllValues();
        for (int n = 0; n < PrmEdit::BoxCount; ++n)
            setColour(n, BoxColour::Clean);
        showMarks();
    });
    connect(&transfer_, &ParamTransfer::valueRefreshed, this, &PrmTblWindow::showParameter);
    connect(&transfer_, &ParamTransfer::valuesRefreshed, driveLine_, &DriveLine::refresh);
    connect(file_, &ParamFile::fileLoaded, driveLine_, &DriveLine::refresh);
    connect(&transfer_, &ParamTransfer::parameterWritten, this, [this](int number) {
        if (number < PrmEdit::BoxCount)
            setColour(number, BoxColour::Clean);
        showMarks();
    });
    connect(&transfer_, &ParamTransfer::transferFinished, this, [this](ParamTransfer::Chain chain) {
        showMarks();
        if (chain == ParamTransfer::Chain::ReadAll || chain == ParamTransfer::Chain::Write)
            Command[WriteServo]->setEnabled(false);
    });
    connect(file_, &ParamFile::valueLoaded, this, [this](int number, bool marked) {
        showParameter(number);
        if (marked && number < PrmEdit::BoxCount)
            setColour(number, BoxColour::FileLoaded);
    });
    connect(file_, &ParamFile::fileLoaded, this, [this](bool enableWriteServo) {
        if (!readingFile_.isEmpty())
            lastFile_ = readingFile_;
        readingFile_.clear();
        showCaption();
        showMarks();
        // The table now holds values: the write buttons follow the controls from here on.
        applyControls();
        if (enableWriteServo && transfersAllowed())
            Command[WriteServo]->setEnabled(true);
    });
    connect(file_, &ParamFile::fileReadAbandoned, this, [this] { readingFile_.clear(); });
    connect(sprm_, &SprmTblWindow::shownChanged, this,
            [this](bool shown) { transfer_.setSystemWindowShown(shown); });
}

void PrmTblWindow::LanguageSelect(Language languageId) {
    showCaption();
    for (int n = 0; n < PrmEdit::BoxCount; ++n) {
        const auto i = static_cast<std::size_t>(n);
        Label1[i]->setText(ParamCatalogue::label(languageId, n));
        TxtPrm[i]->setToolTip(paramguide::toolTip(languageId, n));
    }
    LblPrmFilter->setText(TextCatalogue::text(languageId, Text::ParamFilter));
    TxtPrmFilter->setPlaceholderText(TextCatalogue::text(languageId, Text::ParamNumberWordsName));
    ChkChangedOnly->setText(TextCatalogue::text(languageId, Text::ParamShowOnlyChanged));
    tablekit::fitCountLine(LabelMarked,
                           TextCatalogue::text(languageId, Text::ParamParametersMarkedWriting) +
                               QString::number(ParamTables::Count));
    markedShown_ = -1;
    showMarks();
    applyFilter();
    for (const auto& [n, unit] : Label2)
        unit->setText(ParamCatalogue::unitText(languageId, ParamCatalogue::unit(n)));
    Command[WriteFile]->setText(TextCatalogue::text(languageId, Text::ParamWriteFile));
    Command[ReadFile]->setText(TextCatalogue::text(languageId, Text::ParamReadFile));
    Command[WriteServo]->setText(TextCatalogue::text(languageId, Text::ParamWriteServo));
    Command[ReadServo]->setText(TextCatalogue::text(languageId, Text::ParamReadServo));
    driveLine_->refresh();
}

void PrmTblWindow::showOrigin() {
    driveLine_->refresh();
}

void PrmTblWindow::showTableAnew() {
    showAllValues();
    for (int n = 0; n < PrmEdit::BoxCount; ++n)
        setColour(n, BoxColour::Clean);
    driveLine_->refresh();
    showMarks();
}

void PrmTblWindow::EnableControls(bool enable) {
    ChildWindow::EnableControls(enable);
    applyControls();
}

void PrmTblWindow::DisableTransferButtons() {
    ChildWindow::DisableTransferButtons();
    tablekit::disableServoButtons(Command);
}

void PrmTblWindow::applyControls() {
    const PrmEdit::Controls c =
        PrmEdit::controls(controlsEnabled(), transfersAllowed(), global_.Params.ParamsLoaded);
    for (QLineEdit* box : TxtPrm)
        box->setEnabled(c.boxes);
    sprm_->setBoxesEnabled(c.boxes);
    Command[WriteFile]->setEnabled(c.writeFile);
    Command[ReadFile]->setEnabled(c.readFile);
    Command[WriteServo]->setEnabled(c.writeServo);
    Command[ReadServo]->setEnabled(c.readServo);
}

void PrmTblWindow::Command_Click(int index) {
    if (buttonGuard_ && !buttonGuard_(index))
        return;
    switch (index) {
        case WriteFile: {
            const QString path = chooseFile(true);
            if (file_->write(path)) {
                lastFile_ = path;
                showCaption();
            }
            break;
        }
        case ReadFile:
            // Named in the caption once its values are in the table.
            readingFile_ = chooseFile(false);
            // Online the drive is read first and the file merged later: the name waits for it.
            if (file_->read(readingFile_) != ParamFile::ReadResult::AwaitingDrive)
                readingFile_.clear();
            break;
        case WriteServo:
            transfer_.writeChanged();
            break;
        case ReadServo:
            transfer_.readAll();
            break;
        default:
            break;
    }
}

QString PrmTblWindow::chooseFile(bool save) {
    QFileDialog dialog(this, Command[save ? WriteFile : ReadFile]->text());
    dialog.setObjectName(QStringLiteral("CommonDialog1"));
    // The toolkit's own dialog speaks the program's language; a desktop's may not.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setNameFilters({QStringLiteral("Parameter(*.prm)"), QStringLiteral("All(*.*)")});
    dialog.setDefaultSuffix(QStringLiteral("prm"));
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    // Cancel is silent: no name, nothing done.
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles().value(0);
}

void PrmTblWindow::showSystemWindow() {
    auto* frame = qobject_cast<QMdiSubWindow*>(sprm_->parentWidget());
    auto* ownFrame = qobject_cast<QMdiSubWindow*>(parentWidget());
    if (!frame && ownFrame && ownFrame->mdiArea()) {
        frame = ownFrame->mdiArea()->addSubWindow(sprm_);
        frame->setGeometry(QRect(ownFrame->pos() + SystemWindowOffset, ownFrame->size()));
    }
    if (frame) {
        frame->showNormal();
        sprm_->show();
        frame->mdiArea()->setActiveSubWindow(frame);
        return;
    }
    sprm_->show();
    sprm_->raise();
    sprm_->activateWindow();
}

void PrmTblWindow::showParameter(int number) {
    if (number >= 0 && number < PrmEdit::BoxCount)
        TxtPrm[static_cast<std::size_t>(number)]->setText(edit_.boxText(number));
    else if (number >= PrmEdit::BoxCount && number < ParamTables::Count)
        sprm_->showValue(number - SprmEdit::FirstParam);
}

void PrmTblWindow::showAllValues() {
    for (int n = 0; n < ParamTables::Count; ++n)
        showParameter(n);
}

void PrmTblWindow::setColour(int n, BoxColour colour) {
    QLineEdit* box = TxtPrm.at(static_cast<std::size_t>(n));
    QPalette palette = box->palette();
    palette.setColor(QPalette::Base, QColor(QRgb(boxRgb(colour))));
    box->setPalette(palette);
}

int PrmTblWindow::boxIndex(const QObject* object) const {
    const auto it = std::find(TxtPrm.cbegin(), TxtPrm.cend(), object);
    return it == TxtPrm.cend() ? -1 : static_cast<int>(it - TxtPrm.cbegin());
}

bool PrmTblWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == Command[WriteFile] && event->type() == QEvent::MouseButtonRelease) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (PrmEdit::opensSystemWindow(mouse->button(), mouse->modifiers()))
            showSystemWindow();
        return ChildWindow::eventFilter(watched, event);
    }
    const int n = boxIndex(watched);
    if (n < 0)
        return ChildWindow::eventFilter(watched, event);
    if (const FieldKey key = tablekit::movementKey(event); key != FieldKey::Other) {
        onKey(n, key);
        return true;
    }
    // A caution taking the focus is not leaving the box either: it is active-window focus.
    if (!checking_ && tablekit::leavesBox(event))
        onLeave(n);
    return ChildWindow::eventFilter(watched, event);
}

void PrmTblWindow::onKey(int n, FieldKey key) {
    const KeyOutcome out = edit_.keyDown(n, key);
    follow(n, out.edit);
    // Boxes the filter hides are passed over.
    int focus = out.focus;
    for (int step = 0; step < PrmEdit::BoxCount && !rowShown(focus); ++step)
        focus = NextFieldIndex(focus, key, PrmEdit::BoxCount);
    QLineEdit* box = TxtPrm.at(static_cast<std::size_t>(focus));
    SSTabPrm->setCurrentIndex(focus / PrmEdit::BoxesPerTab);
    box->setFocus(Qt::OtherFocusReason);
    if (auto* scroll = qobject_cast<QScrollArea*>(SSTabPrm->currentWidget()))
        scroll->ensureWidgetVisible(box);
}

void PrmTblWindow::onLeave(int n) {
    follow(n, edit_.leave(n, TxtPrm.at(static_cast<std::size_t>(n))->text()));
}

void PrmTblWindow::follow(int n, EditOutcome outcome) {
    const QScopedValueRollback guard(checking_, true);
    apply(n, outcome);
    bool paused = false;
    if (outcome.pausePolling) {
        engine_.pauseTimer1();
        paused = true;
    }
    while (outcome.caution.kind != CautionKind::None) {
        const QMessageBox::StandardButton pressed =
            boxes_.show(outcome.caution.text, outcome.caution.caption, QMessageBox::Warning,
                        buttonsOf(outcome.caution.buttons), defaultOf(outcome.caution.buttons));
        outcome = edit_.answer(pressed == QMessageBox::Ok || pressed == QMessageBox::Yes);
        apply(n, outcome);
    }
    if (paused)
        engine_.resumeTimer1();
    showMarks();
}

void PrmTblWindow::apply(int n, const EditOutcome& outcome) {
    if (outcome.colour)
        setColour(n, *outcome.colour);
    for (const int refreshed : outcome.refreshed)
        showParameter(refreshed);
}

}  // namespace velora
