#pragma once

#include "core/link/LinkUi.h"

#include <QList>
#include <QPointer>

namespace velora {

class ChildWindow;
class ComConsoleWindow;
class HMonWindow;
class InComDialog;
class MessageBoxes;
class NumMonitorWindow;
class SystemBar;

// What the link engine asks of the windows, passed on to the windows that show it. The main
// window attaches its windows once they exist; until then the calls change nothing on screen.
class AppLinkUi : public LinkUi {
public:
    struct Windows {
        QPointer<SystemBar> systemBar;
        QPointer<ComConsoleWindow> console;
        QPointer<NumMonitorWindow> numMonitor;
        QPointer<HMonWindow> waveMonitor;
        QPointer<InComDialog> busyDialog;
        // Every child window, for the locking of their controls.
        QList<QPointer<ChildWindow>> children;
    };

    explicit AppLinkUi(MessageBoxes& boxes) : boxes_(boxes) {}

    void attach(Windows windows) { windows_ = std::move(windows); }
    [[nodiscard]] MessageBoxes& boxes() const { return boxes_; }

    void EnableControls(bool enable) override;
    void DisableTransferButtons() override;
    void disableConsole() override;

    void showError(const QString& text, const QString& caption) override;
    [[nodiscard]] bool askRetry(const QString& text, const QString& caption) override;
    void showNotice(const QString& text, const QString& caption) override;
    void showWarning(const QString& text, const QString& caption) override;

    void setComText(int index, const QString& text) override;

    void showBusyDialog() override;
    void hideBusyDialog() override;

    void showRealTimeMonitorOff() override;

    void setWaveReadingShown(bool shown) override;
    [[nodiscard]] bool waveReadingShown() const override;
    void enableWavePanel() override;
    void showWaveProgress(const QString& label, const QString& marks) override;
    void setWaveCancelEnabled(bool enable) override;

    void setClock(const QDateTime& now) override;
    void setComIndicator(bool live) override;

private:
    MessageBoxes& boxes_;
    Windows windows_;
};

}  // namespace velora
