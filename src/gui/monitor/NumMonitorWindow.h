#pragma once

#include "core/monitor/MonitorSnapshot.h"
#include "core/monitor/ServoStatusView.h"
#include "core/shared/Language.h"
#include "gui/shared/ChildWindow.h"

#include <QTimer>

#include <array>
#include <optional>

class QGroupBox;
class QLabel;
class QPushButton;

namespace velora {

class RealTimeMonitor;
struct LinkState;

// The numerical monitor window: the servo status bits and the thirteen values of the real-time
// monitor, the monitor's on/off switch and the torque peak reset. The monitor may reply a
// hundred times a second; the window shows the latest values at most every RefreshIntervalMs.
class NumMonitorWindow : public ChildWindow {
    Q_OBJECT
public:
    // Fastest repaint of the values and captions (25 per second).
    static constexpr int RefreshIntervalMs = 40;

    // Both must outlive the window.
    NumMonitorWindow(RealTimeMonitor& monitor, const LinkState& link, QWidget* parent = nullptr);
    Q_DISABLE_COPY_MOVE(NumMonitorWindow)

    void LanguageSelect(Language languageId) override;
    // The torque peak reset follows enable only on drives that know it.
    void EnableControls(bool enable) override;
    void DisableTransferButtons() override;

    // The real-time monitor switch shown as off (its "off" button chosen).
    void showRealTimeMonitorOff();
    // The switch shown as on or off; nothing is sent.
    void showMonitorSwitch(bool on);
    // The switch's two buttons, disabled while a wave capture is armed.
    void setMonitorSwitchEnabled(bool enable);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void buildStatusFrame();
    void buildValueFrame();
    void buildSwitchRow();
    void LabelRtMon_Click(int index);
    void CmdTrqPeakReset_Click();
    // The switch follows the link: offline or without a port it shows off and cannot be used;
    // once the link is back it shows the monitor option again.
    void followLinkState();
    void onSnapshot(const MonitorSnapshot& values);
    void onServoStatus(const ServoStatusView& status);
    void refresh();

    RealTimeMonitor& monitor_;
    const LinkState& link_;

    QGroupBox* Frame1 = nullptr;
    QGroupBox* Frame2 = nullptr;
    std::array<QLabel*, ServoStatusView::BitCount> Label1{};
    std::array<QLabel*, ServoStatusView::BitCount> LabelStatus{};
    std::array<QLabel*, MonitorSnapshot::ValueCount> Label2{};
    std::array<QLabel*, MonitorSnapshot::ValueCount> LabelNumMon{};
    std::array<QLabel*, MonitorSnapshot::ValueCount> Label3{};
    QLabel* Label4 = nullptr;
    std::array<QPushButton*, 2> LabelRtMon{};
    QPushButton* CmdTrqPeakReset = nullptr;

    // What has arrived since the last repaint.
    QTimer refreshTimer_;
    std::optional<MonitorSnapshot> pendingValues_;
    std::optional<ServoStatusView> pendingStatus_;
    bool switchShownOnce_ = false;
    // The switch shows off only because the link was down.
    bool switchHeldOff_ = false;
};

}  // namespace velora
