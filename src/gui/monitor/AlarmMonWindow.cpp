#include "gui/monitor/AlarmMonWindow.h"

#include "core/monitor/AlarmMonitor.h"
#include "core/shared/TextCatalogue.h"
#include "gui/shared/SpokenValue.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace velora {

namespace {

const QColor kActiveLamp(255, 0, 0);

void setBackground(QLabel* label, const QColor& colour) {
    QPalette palette = label->palette();
    palette.setColor(QPalette::Window, colour);
    // Black on red and on the idle colour alike keeps every name readable.
    palette.setColor(QPalette::WindowText, Qt::black);
    label->setPalette(palette);
}

}  // namespace

AlarmMonWindow::AlarmMonWindow(AlarmMonitor& monitor, QWidget* parent)
    : ChildWindow(QStringLiteral("AlarmMon"), parent), monitor_(monitor) {
    auto* grid = new QGridLayout(this);
    for (int i = 0; i < 2; ++i) {
        Label1[i] = new QLabel(this);
        Label1[i]->setObjectName(QStringLiteral("Label1(%1)").arg(i));
        grid->addWidget(Label1[i], 0, i);
    }
    for (int i = 0; i < AlarmData::AlarmCount; ++i) {
        auto* lamp = new QLabel(this);
        lamp->setObjectName(QStringLiteral("LabelNowAlarm(%1)").arg(i));
        lamp->setAutoFillBackground(true);
        lamp->setFrameShape(QFrame::Panel);
        lamp->setFrameShadow(QFrame::Sunken);
        lamp->setMargin(2);
        LabelNowAlarm[static_cast<std::size_t>(i)] = lamp;
        grid->addWidget(lamp, i + 1, 0);

        auto* entry = new QLabel(this);
        entry->setObjectName(QStringLiteral("LabelAlmHistory(%1)").arg(i));
        entry->setFrameShape(QFrame::Panel);
        entry->setFrameShadow(QFrame::Sunken);
        entry->setMargin(2);
        LabelAlmHistory[static_cast<std::size_t>(i)] = entry;
        grid->addWidget(entry, i + 1, 1);
    }
    for (int i = 0; i < 2; ++i) {
        auto* button = new QPushButton(this);
        button->setObjectName(QStringLiteral("CommandALM(%1)").arg(i));
        connect(button, &QPushButton::clicked, this, [this, i] { CommandALM_Click(i); });
        CommandALM[static_cast<std::size_t>(i)] = button;
        grid->addWidget(button, AlarmData::AlarmCount + 1, i);
    }
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(AlarmData::AlarmCount + 2, 1);
    connect(&monitor_, &AlarmMonitor::alarmsChanged, this, &AlarmMonWindow::showAlarms);
    showAlarms(monitor_.alarms());
}

QColor AlarmMonWindow::idleLampColour() const {
    // Qt has no title bar role; an inactive title is drawn in the inactive group's mid tone.
    return palette().color(QPalette::Inactive, QPalette::Mid);
}

void AlarmMonWindow::LanguageSelect(Language languageId) {
    languageId_ = languageId;
    setWindowTitle(TextCatalogue::text(languageId, Text::CaptionAlarm));
    Label1[0]->setText(TextCatalogue::text(languageId, Text::AlarmNowAlarm));
    Label1[1]->setText(TextCatalogue::text(languageId, Text::AlarmAlarmHistory));
    CommandALM[0]->setText(TextCatalogue::text(languageId, Text::AlarmAlarmReset));
    CommandALM[1]->setText(TextCatalogue::text(languageId, Text::AlarmHistoryClear));
    for (int i = 0; i < AlarmData::AlarmCount; ++i) {
        QLabel* lamp = LabelNowAlarm[static_cast<std::size_t>(i)];
        lamp->setText(AlarmMonitor::alarmName(i + 1, languageId));
        lamp->setToolTip(AlarmMonitor::alarmAdvice(i + 1, languageId));
    }
    // The history names follow the language, and the lamps' spoken state with them.
    showAlarms(monitor_.alarms());
}

void AlarmMonWindow::showAlarms(const AlarmData& alarms) {
    const AlarmMonitor::HistoryCaptions history =
        AlarmMonitor::historyCaptions(alarms, languageId_);
    for (int i = 0; i < AlarmData::AlarmCount; ++i) {
        QLabel* lamp = LabelNowAlarm[static_cast<std::size_t>(i)];
        const bool active = alarms.active(i + 1);
        setBackground(lamp, active ? kActiveLamp : idleLampColour());
        lamp->setAccessibleDescription(active ? TextCatalogue::text(languageId_, Text::LinkActive)
                                              : QString());
    }
    for (int i = 0; i < AlarmData::HistoryLength; ++i) {
        QLabel* entry = LabelAlmHistory[static_cast<std::size_t>(i)];
        // The entry's alarm is read out after its place: "Alarm History 1: 05：Over Current".
        spoken::setName(entry, Label1[1]->text() + QStringLiteral(" %1").arg(i + 1));
        spoken::setValue(entry, history[static_cast<std::size_t>(i)]);
    }
}

void AlarmMonWindow::EnableControls(bool enable) {
    ChildWindow::EnableControls(enable);
    for (QPushButton* button : CommandALM)
        button->setEnabled(enable);
}

void AlarmMonWindow::DisableTransferButtons() {
    ChildWindow::DisableTransferButtons();
    for (QPushButton* button : CommandALM)
        button->setEnabled(false);
}

void AlarmMonWindow::CommandALM_Click(int index) {
    if (index == 0)
        monitor_.alarmReset();
    else
        monitor_.historyClear();
}

}  // namespace velora
