#include "gui/monitor/NumMonitorWindow.h"

#include "core/monitor/RealTimeMonitor.h"
#include "core/shared/LinkState.h"
#include "core/shared/TextCatalogue.h"
#include "gui/shared/SpokenValue.h"

#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QVBoxLayout>

namespace velora {

namespace {

template <typename W>
W* named(W* widget, const QString& name, int index) {
    widget->setObjectName(QStringLiteral("%1(%2)").arg(name).arg(index));
    return widget;
}

void setBackColour(QPushButton* button, quint32 rgb) {
    QPalette palette = button->palette();
    palette.setColor(QPalette::Button, QColor(QRgb(rgb)));
    palette.setColor(QPalette::Window, QColor(QRgb(rgb)));
    button->setPalette(palette);
}

}  // namespace

NumMonitorWindow::NumMonitorWindow(RealTimeMonitor& monitor, const LinkState& link, QWidget* parent)
    : ChildWindow(QStringLiteral("NumMonitor"), parent), monitor_(monitor), link_(link) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(6, 6, 6, 6);
    auto* frames = new QHBoxLayout;
    column->addLayout(frames);
    buildStatusFrame();
    buildValueFrame();
    frames->addWidget(Frame1);
    frames->addWidget(Frame2, 1);
    buildSwitchRow();
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(Label4);
    bottom->addWidget(LabelRtMon[0]);
    bottom->addWidget(LabelRtMon[1]);
    bottom->addStretch(1);
    bottom->addWidget(CmdTrqPeakReset);
    column->addLayout(bottom);
    column->addStretch(1);

    refreshTimer_.setSingleShot(true);
    refreshTimer_.setInterval(RefreshIntervalMs);
    connect(&refreshTimer_, &QTimer::timeout, this, &NumMonitorWindow::refresh);
    connect(&monitor_, &RealTimeMonitor::snapshot, this, &NumMonitorWindow::onSnapshot);
    connect(&monitor_, &RealTimeMonitor::ShowServoStatus, this, &NumMonitorWindow::onServoStatus);
    connect(&monitor_, &RealTimeMonitor::monitorSwitchShown, this,
            &NumMonitorWindow::showMonitorSwitch);

    // Until a drive has told its version, it may not know the torque peak reset.
    CmdTrqPeakReset->setEnabled(false);
    showMonitorSwitch(link_.RealTimeMonitor);
}

void NumMonitorWindow::buildStatusFrame() {
    Frame1 = new QGroupBox(this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    auto* grid = new QGridLayout(Frame1);
    grid->setVerticalSpacing(2);
    for (int i = 0; i < ServoStatusView::BitCount; ++i) {
        const auto k = static_cast<std::size_t>(i);
        Label1[k] = named(new QLabel(Frame1), QStringLiteral("Label1"), i);
        LabelStatus[k] =
            named(new QLabel(QStringLiteral(": OFF"), Frame1), QStringLiteral("LabelStatus"), i);
        // Wide enough for ": OFF" so that the column does not move as bits change.
        LabelStatus[k]->setMinimumWidth(LabelStatus[k]->sizeHint().width());
        grid->addWidget(Label1[k], i, 0);
        grid->addWidget(LabelStatus[k], i, 1);
    }
    grid->setRowStretch(ServoStatusView::BitCount, 1);
}

void NumMonitorWindow::buildValueFrame() {
    Frame2 = new QGroupBox(this);
    Frame2->setObjectName(QStringLiteral("Frame2"));
    // Double clicks on the labels inside reach the frame too: labels do not take them.
    Frame2->installEventFilter(this);
    auto* grid = new QGridLayout(Frame2);
    grid->setVerticalSpacing(2);
    for (int i = 0; i < MonitorSnapshot::ValueCount; ++i) {
        const auto k = static_cast<std::size_t>(i);
        Label2[k] = named(new QLabel(Frame2), QStringLiteral("Label2"), i);
        LabelNumMon[k] = named(new QLabel(Frame2), QStringLiteral("LabelNumMon"), i);
        LabelNumMon[k]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        LabelNumMon[k]->setFrameShape(QFrame::Panel);
        LabelNumMon[k]->setFrameShadow(QFrame::Sunken);
        // Room for the usual positions, so that the layout holds still while values change.
        LabelNumMon[k]->setMinimumWidth(
            LabelNumMon[k]->fontMetrics().horizontalAdvance(QStringLiteral("-99999999")) + 8);
        Label3[k] =
            named(new QLabel(MonitorSnapshot::unitLabel(i), Frame2), QStringLiteral("Label3"), i);
        grid->addWidget(Label2[k], i, 0);
        grid->addWidget(LabelNumMon[k], i, 1);
        grid->addWidget(Label3[k], i, 2);
    }
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(MonitorSnapshot::ValueCount, 1);
}

void NumMonitorWindow::buildSwitchRow() {
    Label4 = new QLabel(this);
    Label4->setObjectName(QStringLiteral("Label4"));
    const std::array<QString, 2> texts{QStringLiteral("ON"), QStringLiteral("OFF")};
    for (int i = 0; i < 2; ++i) {
        const auto k = static_cast<std::size_t>(i);
        LabelRtMon[k] = named(new QPushButton(texts[k], this), QStringLiteral("LabelRtMon"), i);
        // The colour is the switch's state; the button's own background would hide it.
        LabelRtMon[k]->setAutoFillBackground(true);
        connect(LabelRtMon[k], &QPushButton::clicked, this, [this, i] { LabelRtMon_Click(i); });
    }
    CmdTrqPeakReset = new QPushButton(this);
    CmdTrqPeakReset->setObjectName(QStringLiteral("CmdTrqPeakReset"));
    connect(CmdTrqPeakReset, &QPushButton::clicked, this, &NumMonitorWindow::CmdTrqPeakReset_Click);
}

void NumMonitorWindow::LanguageSelect(Language languageId) {
    setWindowTitle(TextCatalogue::text(languageId, Text::CaptionMonitor));
    Frame1->setTitle(TextCatalogue::text(languageId, Text::MonitorServoStatus));
    Frame2->setTitle(TextCatalogue::text(languageId, Text::MonitorNumericalMonitor));
    const std::array<QString, ServoStatusView::BitCount> statusNames{
        TextCatalogue::text(languageId, Text::MonitorServoOn),
        TextCatalogue::text(languageId, Text::MonitorAlarm),
        TextCatalogue::text(languageId, Text::MonitorEMCStop),
        TextCatalogue::text(languageId, Text::MonitorInposition),
        TextCatalogue::text(languageId, Text::MonitorRunPlus),
        TextCatalogue::text(languageId, Text::MonitorRUNMinus),
        TextCatalogue::text(languageId, Text::MonitorComPlus),
        TextCatalogue::text(languageId, Text::MonitorComMinus),
        TextCatalogue::text(languageId, Text::MonitorPlusOT),
        TextCatalogue::text(languageId, Text::MonitorMinusOT),
        TextCatalogue::text(languageId, Text::MonitorResoSel),
        TextCatalogue::text(languageId, Text::MonitorTQLimit),
        TextCatalogue::text(languageId, Text::MonitorVelLimit),
        TextCatalogue::text(languageId, Text::MonitorPointMove),
        TextCatalogue::text(languageId, Text::MonitorZrtnLS),
        TextCatalogue::text(languageId, Text::MonitorZrtnFin)};
    const std::array<QString, MonitorSnapshot::ValueCount> valueNames{
        TextCatalogue::text(languageId, Text::MonitorNowPosition),
        TextCatalogue::text(languageId, Text::MonitorPositionCom),
        TextCatalogue::text(languageId, Text::MonitorPosDeviation),
        TextCatalogue::text(languageId, Text::MonitorRestComPulse),
        TextCatalogue::text(languageId, Text::MonitorNowVelocity),
        TextCatalogue::text(languageId, Text::MonitorComVelocity),
        TextCatalogue::text(languageId, Text::MonitorTorqueCom),
        TextCatalogue::text(languageId, Text::MonitorStartPointNum),
        TextCatalogue::text(languageId, Text::MonitorNowPointNum),
        TextCatalogue::text(languageId, Text::MonitorNextPointNum),
        TextCatalogue::text(languageId, Text::MonitorTorqueLimit),
        TextCatalogue::text(languageId, Text::MonitorDECMinusZPulse),
        TextCatalogue::text(languageId, Text::MonitorTorquePeak)};
    for (std::size_t k = 0; k < statusNames.size(); ++k) {
        Label1[k]->setText(statusNames[k]);
        // A screen reader reads the state under the name of its bit.
        spoken::setName(LabelStatus[k], statusNames[k]);
        // What the bit means, on its name and on its state alike.
        const QString meaning =
            TextCatalogue::text(languageId, Text::StatusBitHelp0, static_cast<int>(k));
        Label1[k]->setToolTip(meaning);
        LabelStatus[k]->setToolTip(meaning);
    }
    for (std::size_t k = 0; k < valueNames.size(); ++k) {
        Label2[k]->setText(valueNames[k]);
        spoken::setName(LabelNumMon[k], valueNames[k]);
        LabelNumMon[k]->setAccessibleDescription(Label3[k]->text());
    }
    Label4->setText(TextCatalogue::text(languageId, Text::MonitorRealTimeMonitor));
    for (QPushButton* button : LabelRtMon)
        button->setAccessibleDescription(Label4->text());
    CmdTrqPeakReset->setText(TextCatalogue::text(languageId, Text::MonitorTorquePeakReset));
}

void NumMonitorWindow::EnableControls(bool enable) {
    ChildWindow::EnableControls(enable);
    CmdTrqPeakReset->setEnabled(sendingAllowed() &&
                                link_.DriverVersion >= RealTimeMonitor::TorquePeakVersion);
    followLinkState();
}

void NumMonitorWindow::DisableTransferButtons() {
    ChildWindow::DisableTransferButtons();
    CmdTrqPeakReset->setEnabled(false);
    followLinkState();
}

void NumMonitorWindow::followLinkState() {
    const bool ready = linkReady();
    setMonitorSwitchEnabled(ready);
    if (!ready) {
        showMonitorSwitch(false);
        switchHeldOff_ = true;
    } else if (switchHeldOff_ && link_.RealTimeMonitor) {
        showMonitorSwitch(true);
    }
}

void NumMonitorWindow::showRealTimeMonitorOff() {
    showMonitorSwitch(false);
}

void NumMonitorWindow::showMonitorSwitch(bool on) {
    switchHeldOff_ = false;
    setBackColour(LabelRtMon[0], on ? monitorcolour::SwitchChosen : monitorcolour::SwitchIdle);
    setBackColour(LabelRtMon[1], on ? monitorcolour::SwitchIdle : monitorcolour::SwitchChosen);
}

void NumMonitorWindow::setMonitorSwitchEnabled(bool enable) {
    for (QPushButton* button : LabelRtMon)
        button->setEnabled(enable);
}

bool NumMonitorWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == Frame2 && event->type() == QEvent::MouseButtonDblClick)
        monitor_.setRealTimeMonitorOnly();
    return ChildWindow::eventFilter(watched, event);
}

void NumMonitorWindow::showEvent(QShowEvent* event) {
    ChildWindow::showEvent(event);
    // The settings are read after the window is made: the switch shows them from its first
    // appearance on, and from then on only what the user and the link do to it.
    if (!switchShownOnce_) {
        switchShownOnce_ = true;
        showMonitorSwitch(link_.RealTimeMonitor);
        followLinkState();
        // A frame placed smaller than the monitor needs would cut values off: it grows once.
        if (auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget()))
            frame->resize(frame->size().expandedTo(frame->minimumSizeHint()));
    }
}

void NumMonitorWindow::LabelRtMon_Click(int index) {
    monitor_.setMonitorSwitch(index == 0);
}

void NumMonitorWindow::CmdTrqPeakReset_Click() {
    monitor_.resetTorquePeak();
}

void NumMonitorWindow::onSnapshot(const MonitorSnapshot& values) {
    const std::optional<double> earlierPeak =
        pendingValues_ ? pendingValues_->TorquePeak : std::nullopt;
    pendingValues_ = values;
    // A reply without the peak leaves the peak shown; merged replies must not lose one.
    if (!pendingValues_->TorquePeak)
        pendingValues_->TorquePeak = earlierPeak;
    if (!refreshTimer_.isActive())
        refreshTimer_.start();
}

void NumMonitorWindow::onServoStatus(const ServoStatusView& status) {
    pendingStatus_ = status;
    if (!refreshTimer_.isActive())
        refreshTimer_.start();
}

void NumMonitorWindow::refresh() {
    if (pendingValues_) {
        for (int i = 0; i < MonitorSnapshot::ValueCount; ++i) {
            if (i == MonitorSnapshot::TorquePeakIndex && !pendingValues_->TorquePeak)
                continue;
            spoken::setValue(LabelNumMon[static_cast<std::size_t>(i)],
                             pendingValues_->valueText(i, locale()));
        }
        pendingValues_.reset();
    }
    if (pendingStatus_) {
        for (std::size_t k = 0; k < LabelStatus.size(); ++k)
            spoken::setValue(LabelStatus[k], pendingStatus_->captions[k]);
        pendingStatus_.reset();
    }
}

}  // namespace velora
