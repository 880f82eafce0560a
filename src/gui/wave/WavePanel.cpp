#include "gui/wave/WavePanel.h"

#include "core/shared/TextCatalogue.h"
#include "core/shared/WaveMonSettings.h"
#include "core/shared/WaveStore.h"
#include "core/wave/WaveScale.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace velora {

namespace {

template <typename W>
W* named(W* widget, const QString& name) {
    widget->setObjectName(name);
    return widget;
}

QString indexed(const char* name, int i) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(i);
}

QComboBox* combo(QWidget* parent, const QString& name, bool editable = false) {
    auto* box = named(new QComboBox(parent), name);
    box->setEditable(editable);
    if (editable) {
        // The list keeps exactly its entries: a typed number is limited by the window when the
        // box is left, never added as an entry that could later be chosen unchecked. Without
        // completion "5" stays 5 and does not become the entry "50".
        box->setInsertPolicy(QComboBox::NoInsert);
        box->setCompleter(nullptr);
    }
    box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    return box;
}

template <std::size_t N>
QStringList numbers(const std::array<int, N>& list) {
    QStringList texts;
    for (const int v : list)
        texts << QString::number(v);
    return texts;
}

// One row of a settings grid: the label (tied to its box), the box, and an optional button.
void labelled(QGridLayout* grid, int r, QLabel* label, QWidget* box, QWidget* extra = nullptr) {
    label->setBuddy(box);
    grid->addWidget(label, r, 0);
    grid->addWidget(box, r, 1);
    if (extra)
        grid->addWidget(extra, r, 2);
}

}  // namespace

WavePanel::WavePanel(QWidget* parent) : QWidget(parent) {
    PictEnable = named(new QWidget(this), QStringLiteral("PictEnable"));
    auto* column = new QVBoxLayout(PictEnable);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    for (int i = 0; i < 4; ++i)
        Label[static_cast<std::size_t>(i)] =
            named(new QLabel(PictEnable), QStringLiteral("Label%1").arg(i + 1));

    auto [trigger, tGrid] = addFrame(column, QStringLiteral("Frame1"));
    Frame1 = trigger;
    CmbTrig = combo(Frame1, QStringLiteral("CmbTrig"));
    CmbLgcSel = combo(Frame1, QStringLiteral("CmbLgcSel"));
    CmbEdge = combo(Frame1, QStringLiteral("CmbEdge"));
    ImgEdge = named(new QToolButton(Frame1), QStringLiteral("ImgEdge"));
    ImgEdge->setIconSize(QSize(24, 24));
    labelled(tGrid, 0, Label[0], CmbTrig);
    labelled(tGrid, 1, Label[1], CmbLgcSel);
    labelled(tGrid, 2, Label[2], CmbEdge, ImgEdge);

    auto [horizontal, hGrid] = addFrame(column, QStringLiteral("Frame3"));
    Frame3 = horizontal;
    CmbTimeScale = combo(Frame3, QStringLiteral("CmbTimeScale"));
    CmbTimeScale->addItems(numbers(wave::TimeScaleMs));
    CmbTrigPos = combo(Frame3, QStringLiteral("CmbTrigPos"), true);
    CmbTrigPos->addItems({QStringLiteral("20"), QStringLiteral("50"), QStringLiteral("80")});
    Label11 = named(new QLabel(Frame3), QStringLiteral("Label11"));
    Label12 = named(new QLabel(Frame3), QStringLiteral("Label12"));
    labelled(hGrid, 0, Label11, CmbTimeScale);
    labelled(hGrid, 1, Label12, CmbTrigPos);

    buildScales(column);
    buildButtons(column);

    auto* sideColumn = new QVBoxLayout(this);
    sideColumn->setContentsMargins(0, 0, 0, 0);
    sideColumn->addWidget(PictEnable, 1);
    buildBusyPanel();
    CmdCancel = named(new QPushButton(this), QStringLiteral("CmdCancel"));
    sideColumn->addWidget(CmdCancel);
}

std::pair<QGroupBox*, QGridLayout*> WavePanel::addFrame(QVBoxLayout* column, const QString& name) {
    auto* box = named(new QGroupBox(PictEnable), name);
    column->addWidget(box);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(6, 4, 6, 4);
    grid->setVerticalSpacing(3);
    return std::pair{box, grid};
}

void WavePanel::buildScales(QVBoxLayout* column) {
    const QStringList zeroList{QStringLiteral("20"), QStringLiteral("50"), QStringLiteral("80")};
    auto [velocity, vGrid] = addFrame(column, QStringLiteral("Frame2"));
    Frame2 = velocity;
    CmbVelScale = combo(Frame2, QStringLiteral("CmbVelScale"));
    CmbVelScale->addItems(numbers(wave::VelScaleRpm));
    CmbVelZero = combo(Frame2, QStringLiteral("CmbVelZero"), true);
    CmbVelZero->addItems(zeroList);
    Label5 = named(new QLabel(Frame2), QStringLiteral("Label5"));
    Label8 = named(new QLabel(Frame2), QStringLiteral("Label8"));
    labelled(vGrid, 0, Label5, CmbVelScale);
    labelled(vGrid, 1, Label8, CmbVelZero);

    auto [torque, qGrid] = addFrame(column, QStringLiteral("Frame4"));
    Frame4 = torque;
    CmbTqScale = combo(Frame4, QStringLiteral("CmbTqScale"));
    CmbTqScale->addItems(numbers(wave::TqScalePercent));
    CmbTqZero = combo(Frame4, QStringLiteral("CmbTqZero"), true);
    CmbTqZero->addItems(zeroList);
    Label9 = named(new QLabel(Frame4), QStringLiteral("Label9"));
    Label10 = named(new QLabel(Frame4), QStringLiteral("Label10"));
    labelled(qGrid, 0, Label9, CmbTqScale);
    labelled(qGrid, 1, Label10, CmbTqZero);
}

void WavePanel::buildButtons(QVBoxLayout* column) {
    auto* display = new QGridLayout;
    column->addLayout(display);
    CmbWave = combo(PictEnable, QStringLiteral("CmbWave"));
    ImgWave = named(new QToolButton(PictEnable), QStringLiteral("ImgWave"));
    ImgWave->setIconSize(QSize(24, 24));
    labelled(display, 0, Label[3], CmbWave, ImgWave);

    auto* buttons = new QGridLayout;
    column->addLayout(buttons);
    for (int i = 0; i < 2; ++i) {
        const auto k = static_cast<std::size_t>(i);
        CmdFile[k] = named(new QPushButton(PictEnable), indexed("CmdFile", i));
        CmdImage[k] = named(new QPushButton(PictEnable), indexed("CmdImage", i));
        buttons->addWidget(CmdFile[k], 0, i);
        buttons->addWidget(CmdImage[k], 1, i);
    }
    CmdRun = named(new QPushButton(PictEnable), QStringLiteral("CmdRun"));
    CmdRun->setDefault(true);
    buttons->addWidget(CmdRun, 2, 0, 1, 2);
    column->addStretch(1);
}

void WavePanel::buildBusyPanel() {
    PictYomitorichu = named(new QFrame(this), QStringLiteral("PictYomitorichu"));
    PictYomitorichu->setFrameShape(QFrame::StyledPanel);
    PictYomitorichu->setAutoFillBackground(true);
    QPalette busy = PictYomitorichu->palette();
    busy.setColor(QPalette::Window, QColor(255, 244, 200));
    busy.setColor(QPalette::WindowText, Qt::black);
    PictYomitorichu->setPalette(busy);
    auto* status = new QVBoxLayout(PictYomitorichu);
    status->setContentsMargins(6, 4, 6, 4);
    LblJap = named(new QLabel(PictYomitorichu), QStringLiteral("LblJap"));
    LblEng = named(new QLabel(PictYomitorichu), QStringLiteral("LblEng"));
    LblT = named(new QLabel(PictYomitorichu), QStringLiteral("LblT"));
    for (QLabel* label : {LblJap, LblEng, LblT}) {
        // The marks grow with the record and a status may be long: they take the width there
        // is rather than widening the panel, which would squeeze the traces and the settings.
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        status->addWidget(label);
    }
    LblEng->hide();  // kept for the second language line, empty in this program
    // Laid over the panel, outside its layout: showing it takes no height from the settings.
    PictYomitorichu->installEventFilter(this);
}

void WavePanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    placeBusyPanel();
}

bool WavePanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == PictYomitorichu && event->type() == QEvent::Show)
        placeBusyPanel();
    return QWidget::eventFilter(watched, event);
}

void WavePanel::placeBusyPanel() {
    // Over the foot of the settings, just above Cancel: they are locked while a capture runs.
    const int height = PictYomitorichu->sizeHint().height();
    const QRect settings = PictEnable->geometry();
    PictYomitorichu->setGeometry(settings.left(), settings.bottom() + 1 - height, settings.width(),
                                 height);
    PictYomitorichu->raise();
}

void WavePanel::LanguageSelect(Language languageId) {
    const auto text = [languageId](Text id) { return TextCatalogue::text(languageId, id); };
    for (int i = 0; i < 4; ++i)
        Label[static_cast<std::size_t>(i)]->setText(
            TextCatalogue::text(languageId, Text::WaveTriggerSource, i));
    Frame1->setTitle(text(Text::WaveTriggerMenu));
    Frame2->setTitle(text(Text::WaveCH1Velocity));
    Frame3->setTitle(text(Text::WaveHorizontal));
    Frame4->setTitle(text(Text::WaveCH2Torque));
    Label5->setText(text(Text::WaveScaleRpmDiv));
    Label8->setText(text(Text::WaveZeroLevelCh1));
    Label9->setText(text(Text::WaveScalePercentDiv));
    Label10->setText(text(Text::WaveZeroLevelCh2));
    Label11->setText(text(Text::WaveScaleMsDiv));
    Label12->setText(text(Text::WaveTrigPos));
    CmdFile[0]->setText(text(Text::WaveReadFile));
    CmdFile[1]->setText(text(Text::WaveWriteFile));
    CmdCancel->setText(text(Text::WaveCancel));
    CmdRun->setText(text(Text::ScopeRun));
    CmdImage[0]->setText(text(Text::ScopeCopyImage));
    CmdImage[1]->setText(text(Text::ScopeSaveImagePNG));
    ImgEdge->setToolTip(text(Text::WaveTriggerEdgeSelect));
    ImgEdge->setAccessibleName(text(Text::WaveTriggerEdgeSelect));
    ImgWave->setToolTip(text(Text::WavePreviousWaveDisplay));
    ImgWave->setAccessibleName(text(Text::WavePreviousWaveDisplay));
}

void WavePanel::fillLists(Language languageId, const WaveMonSettings& w) {
    // Refilled in each language, keeping the choices.
    const auto fill = [languageId](QComboBox* box, Text first, int count, int index) {
        const QSignalBlocker block(box);
        box->clear();
        for (int i = 0; i < count; ++i)
            box->addItem(TextCatalogue::text(languageId, first, i));
        box->setCurrentIndex(index);
    };
    fill(CmbTrig, Text::WaveVelocity, wave::SourceCount, w.Trig);
    fill(CmbLgcSel, Text::WaveFIN, wave::LogicCount, w.LgcSel);
    fill(CmbEdge, Text::WavePlusUp, wave::EdgeCount, w.Edge);
    fill(CmbWave, Text::WaveNowPlusPrev, wave::WaveModeCount, w.Wave);
}

QString WavePanel::settingsLine(Language lang, const WaveStore& store) const {
    const auto text = [lang](Text id) { return TextCatalogue::text(lang, id); };
    // Three lines: the channels, the time axis, the trigger.
    return QStringLiteral(
               "%1 %2 %3, %4 %5   %6 %7 %8, %9 %10\n%11 %12 %13, %14 %15\n"
               "%16: %17 %18, %19 %20")
        .arg(text(Text::WaveCH1Velocity), text(Text::WaveScaleRpmDiv), CmbVelScale->currentText(),
             text(Text::WaveZeroLevelCh1))
        .arg(store.ZeroLevel[0])
        .arg(text(Text::WaveCH2Torque), text(Text::WaveScalePercentDiv), CmbTqScale->currentText(),
             text(Text::WaveZeroLevelCh2))
        .arg(store.ZeroLevel[1])
        .arg(text(Text::WaveHorizontal), text(Text::WaveScaleMsDiv), CmbTimeScale->currentText(),
             text(Text::WaveTrigPos))
        .arg(wave::percentFromTriggerPosition(store.TriggerPosition))
        .arg(text(Text::ScopeTriggerOn), CmbTrig->currentText(), CmbEdge->currentText(),
             text(Text::WaveLogicSignal), CmbLgcSel->currentText());
}

}  // namespace velora
