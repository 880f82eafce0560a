#pragma once

#include "link/LinkUi.h"

#include <QMainWindow>

class QLabel;
class QLineEdit;

namespace velora {

struct Global;

// The main window. For now it shows the exchange of the link (sent and received text), the
// COM indicator and the clock; the child windows join it with their subsystems.
class MainWindow : public QMainWindow, public LinkUi {
    Q_OBJECT
public:
    explicit MainWindow(Global& global, QWidget* parent = nullptr);

    // Names the simulated drive in the caption, so nobody mistakes it for a real one.
    void setSimulatedDevice(const QString& device);

    void EnableControls(bool enable) override;
    void DisableTransferButtons() override {}
    void disableConsole() override {}
    void showError(const QString& text, const QString& caption) override;
    [[nodiscard]] bool askRetry(const QString& text, const QString& caption) override;
    void showNotice(const QString& text, const QString& caption) override;
    void setComText(int index, const QString& text) override;
    void showBusyDialog() override {}
    void hideBusyDialog() override {}
    void showRealTimeMonitorOff() override {}
    void setWaveReadingShown(bool) override {}
    [[nodiscard]] bool waveReadingShown() const override { return false; }
    void enableWavePanel() override {}
    void showWaveProgress(const QString&, const QString&) override {}
    void setWaveCancelEnabled(bool) override {}
    void setClock(const QDateTime& now) override;
    void setComIndicator(bool live) override;

private:
    void updateCaption();

    Global& global_;
    QString simulatedDevice_;
    QLineEdit* comText_[2] = {nullptr, nullptr};
    QLabel* lblCom_ = nullptr;
    QLabel* lblDateTime_ = nullptr;
};

}  // namespace velora
