#pragma once

#include "core/link/ReplyDispatcher.h"

#include <QObject>
#include <QString>

namespace velora {

class LinkEngine;
struct Global;

// The wave capture protocol: builds the start (wm), trigger settings (wt) and cancel (wq)
// commands from the shared trigger settings, and handles the replies wm, wr, wd and wq. The
// record goes into the shared wave store; windows follow through the signals, so a command-line
// capture can use it without any window. Registers its handlers with the engine; must not
// outlive it.
class WaveCapture : public QObject {
    Q_OBJECT
public:
    WaveCapture(LinkEngine& engine, Global& global, QObject* parent = nullptr);
    ~WaveCapture() override;
    Q_DISABLE_COPY_MOVE(WaveCapture)

    // The settings part of wm and wt: time scale, source, logic signal and edge as one digit
    // each, then the trigger position in upper-case hex without padding.
    [[nodiscard]] QString settingsPayload() const;
    // Start: posts axis + "wm" + settings (leaves with the next turn of the monitor chain when
    // the real-time monitor is on, else at once).
    void run();
    // A trigger setting changed: posts axis + "wt" + settings, but only while on line with the
    // monitor running. Returns whether it was posted.
    bool sendTriggerSettings();
    // Cancel: sends axis + "wq" at once.
    void cancel();

    // Reply handlers (axis character, code, payload).
    [[nodiscard]] ReplyStatus OnWmReply(const QString& reply);
    [[nodiscard]] ReplyStatus OnWrReply(const QString& reply);
    [[nodiscard]] ReplyStatus OnWdReply(const QString& reply);
    [[nodiscard]] ReplyStatus OnWqReply(const QString& reply);

    // Characters of a full record's payload: 250 samples of 12.
    static constexpr int RecordLength = 3000;
    static constexpr int SampleWidth = 12;

signals:
    // The capture is armed and waits for its trigger.
    void armed();
    // The drive saw the trigger; the record follows.
    void triggered();
    // A new record is "now" (slot 1), the former one "previous" (slot 2).
    void recordReceived();
    // The capture ended without a record (cancelled).
    void cancelled();

private:
    // Both ways a capture ends: idle, controls usable, and the monitor chain restarted.
    void finish();

    LinkEngine& engine_;
    Global& global_;
};

}  // namespace velora
