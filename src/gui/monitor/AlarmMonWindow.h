#pragma once

#include "core/shared/AlarmData.h"
#include "core/shared/Language.h"
#include "gui/shared/ChildWindow.h"

#include <QColor>

#include <array>

class QLabel;
class QPushButton;

namespace velora {

class AlarmMonitor;

// The alarm monitor: the eight alarms lit red while active, the drive's alarm history of eight
// entries, and the Alarm Reset and History Clear buttons.
class AlarmMonWindow : public ChildWindow {
    Q_OBJECT
public:
    // The monitor must outlive the window.
    explicit AlarmMonWindow(AlarmMonitor& monitor, QWidget* parent = nullptr);
    Q_DISABLE_COPY_MOVE(AlarmMonWindow)

    void LanguageSelect(Language languageId) override;
    void EnableControls(bool enable) override;
    void DisableTransferButtons() override;

    // The lamp of an alarm that is not active: the colour of an inactive title bar.
    [[nodiscard]] QColor idleLampColour() const;

private:
    void showAlarms(const AlarmData& alarms);
    void CommandALM_Click(int index);

    AlarmMonitor& monitor_;
    Language languageId_ = Language::English;
    std::array<QLabel*, 2> Label1{};
    std::array<QLabel*, AlarmData::AlarmCount> LabelNowAlarm{};
    std::array<QLabel*, AlarmData::HistoryLength> LabelAlmHistory{};
    std::array<QPushButton*, 2> CommandALM{};
};

}  // namespace velora
