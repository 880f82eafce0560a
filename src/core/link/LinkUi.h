#pragma once

#include <QDateTime>
#include <QString>

namespace velora {

// What the link engine needs from the windows. The application implements it over its widgets;
// tests replace it with a recording fake. Every call is synchronous: the modal ones return only
// when the user has answered.
class LinkUi {
public:
    LinkUi() = default;
    virtual ~LinkUi() = default;
    LinkUi(const LinkUi&) = delete;
    LinkUi& operator=(const LinkUi&) = delete;

    // Enabling of the command-sending controls of all windows.
    virtual void EnableControls(bool enable) = 0;
    // Transfer buttons of all editors, the alarm and wave buttons, the torque peak reset; the
    // real-time monitor indicator is shown as off.
    virtual void DisableTransferButtons() = 0;
    // The console's send button and command buttons (the engine adds the transfer buttons).
    virtual void disableConsole() = 0;

    // Modal message boxes, critical icon. askRetry returns true for Retry, false for Cancel.
    virtual void showError(const QString& text, const QString& caption) = 0;
    [[nodiscard]] virtual bool askRetry(const QString& text, const QString& caption) = 0;
    // Modal information box with OK only.
    virtual void showNotice(const QString& text, const QString& caption) = 0;
    // The same with the exclamation icon: the user must act on it (restart the drive).
    virtual void showWarning(const QString& text, const QString& caption) {
        showNotice(text, caption);
    }

    // Console echo: index 0 is the sent text, index 1 the received one.
    virtual void setComText(int index, const QString& text) = 0;

    // The busy dialog "Communicating......".
    virtual void showBusyDialog() = 0;
    virtual void hideBusyDialog() = 0;

    // Numerical monitor's real-time indicator shown as off.
    virtual void showRealTimeMonitorOff() = 0;

    // Wave monitor: the "reading" picture, the panel of its settings, the progress line and the
    // cancel button.
    virtual void setWaveReadingShown(bool shown) = 0;
    [[nodiscard]] virtual bool waveReadingShown() const = 0;
    virtual void enableWavePanel() = 0;
    virtual void showWaveProgress(const QString& label, const QString& marks) = 0;
    virtual void setWaveCancelEnabled(bool enable) = 0;

    // Status bar: clock and the COM indicator (red while the monitor chain runs, else black).
    virtual void setClock(const QDateTime& now) = 0;
    virtual void setComIndicator(bool live) = 0;
};

}  // namespace velora
