#include "gui/app/AppLinkUi.h"

#include "gui/console/ComConsoleWindow.h"
#include "gui/link/InComDialog.h"
#include "gui/link/SystemBar.h"
#include "gui/monitor/NumMonitorWindow.h"
#include "gui/shared/ChildWindow.h"
#include "gui/shared/MessageBoxes.h"
#include "gui/wave/HMonWindow.h"

namespace velora {

void AppLinkUi::EnableControls(bool enable) {
    for (const QPointer<ChildWindow>& child : windows_.children) {
        if (child)
            child->EnableControls(enable);
    }
}

void AppLinkUi::DisableTransferButtons() {
    for (const QPointer<ChildWindow>& child : windows_.children) {
        if (child)
            child->DisableTransferButtons();
    }
    showRealTimeMonitorOff();
    setWaveReadingShown(false);
}

void AppLinkUi::disableConsole() {
    if (windows_.console)
        windows_.console->disableConsole();
}

void AppLinkUi::showError(const QString& text, const QString& caption) {
    boxes_.show(text, caption, QMessageBox::Critical);
}

bool AppLinkUi::askRetry(const QString& text, const QString& caption) {
    return boxes_.show(text, caption, QMessageBox::Critical,
                       QMessageBox::Retry | QMessageBox::Cancel) == QMessageBox::Retry;
}

void AppLinkUi::showNotice(const QString& text, const QString& caption) {
    boxes_.show(text, caption, QMessageBox::Information);
}

void AppLinkUi::showWarning(const QString& text, const QString& caption) {
    boxes_.show(text, caption, QMessageBox::Warning);
}

void AppLinkUi::setComText(int index, const QString& text) {
    if (windows_.console)
        windows_.console->setComText(index, text);
}

void AppLinkUi::showBusyDialog() {
    if (windows_.busyDialog)
        windows_.busyDialog->showBusy();
}

void AppLinkUi::hideBusyDialog() {
    if (windows_.busyDialog)
        windows_.busyDialog->hideBusy();
}

void AppLinkUi::showRealTimeMonitorOff() {
    if (windows_.numMonitor)
        windows_.numMonitor->showRealTimeMonitorOff();
}

void AppLinkUi::setWaveReadingShown(bool shown) {
    if (windows_.waveMonitor)
        windows_.waveMonitor->setWaveReadingShown(shown);
    // However a capture ends, the monitor switch its start locked is usable again.
    if (!shown && windows_.numMonitor)
        windows_.numMonitor->setMonitorSwitchEnabled(true);
}

bool AppLinkUi::waveReadingShown() const {
    return windows_.waveMonitor && windows_.waveMonitor->waveReadingShown();
}

void AppLinkUi::enableWavePanel() {
    if (windows_.waveMonitor)
        windows_.waveMonitor->enableWavePanel();
}

void AppLinkUi::showWaveProgress(const QString& label, const QString& marks) {
    if (windows_.waveMonitor)
        windows_.waveMonitor->showWaveProgress(label, marks);
}

void AppLinkUi::setWaveCancelEnabled(bool enable) {
    if (windows_.waveMonitor)
        windows_.waveMonitor->setWaveCancelEnabled(enable);
}

void AppLinkUi::setClock(const QDateTime& now) {
    if (windows_.systemBar)
        windows_.systemBar->setClock(now);
}

void AppLinkUi::setComIndicator(bool live) {
    if (windows_.systemBar)
        windows_.systemBar->setComIndicator(live);
}

}  // namespace velora
