#pragma once

#include "core/link/LinkUi.h"

#include <QStringList>

#include <functional>

namespace velora::test {

// Records what the link asks of the windows; modal questions are answered by a preset choice.
class FakeLinkUi : public LinkUi {
public:
    struct Message {
        QString kind;  // "error", "retry" or "notice"
        QString text;
        QString caption;
        bool timer1ActiveWhileOpen = true;
    };

    // Reports whether Timer1 ran while a modal message was open.
    std::function<bool()> timer1Probe = [] { return false; };
    bool answerRetry = false;

    bool controlsEnabled = true;
    int transferButtonsDisabled = 0;
    int consoleDisabled = 0;
    bool busyDialogShown = false;
    bool realTimeMonitorShownOff = false;
    bool readingShown = false;
    bool wavePanelEnabled = false;
    bool waveCancelEnabled = true;
    QString waveLabel;
    QString waveMarks;
    bool comLive = false;
    int clockUpdates = 0;
    QString comText[2];
    QList<Message> messages;

    void EnableControls(bool enable) override { controlsEnabled = enable; }
    void DisableTransferButtons() override { ++transferButtonsDisabled; }
    void disableConsole() override { ++consoleDisabled; }
    void showError(const QString& text, const QString& caption) override {
        messages.append({QStringLiteral("error"), text, caption, timer1Probe()});
    }
    bool askRetry(const QString& text, const QString& caption) override {
        messages.append({QStringLiteral("retry"), text, caption, timer1Probe()});
        return answerRetry;
    }
    void showNotice(const QString& text, const QString& caption) override {
        messages.append({QStringLiteral("notice"), text, caption, timer1Probe()});
    }
    void setComText(int index, const QString& text) override { comText[index] = text; }
    void showBusyDialog() override { busyDialogShown = true; }
    void hideBusyDialog() override { busyDialogShown = false; }
    void showRealTimeMonitorOff() override { realTimeMonitorShownOff = true; }
    void setWaveReadingShown(bool shown) override { readingShown = shown; }
    [[nodiscard]] bool waveReadingShown() const override { return readingShown; }
    void enableWavePanel() override { wavePanelEnabled = true; }
    void showWaveProgress(const QString& label, const QString& marks) override {
        waveLabel = label;
        waveMarks = marks;
    }
    void setWaveCancelEnabled(bool enable) override { waveCancelEnabled = enable; }
    void setClock(const QDateTime&) override { ++clockUpdates; }
    void setComIndicator(bool live) override { comLive = live; }
};

}  // namespace velora::test
