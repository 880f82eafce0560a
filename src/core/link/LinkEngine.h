#pragma once

#include "core/link/CommandSender.h"
#include "core/link/PollingCycle.h"
#include "core/link/ReplyDispatcher.h"
#include "core/link/Transport.h"
#include "core/shared/LinkState.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>

namespace velora {

class LinkUi;
class FrameTrace;

// The servo link: owns the port, the polling timer (Timer1) and the end-of-transmission timer
// (Timer2), and joins the sender, the dispatcher and the polling cycle over the shared LinkState.
// Everything runs on the thread that created it; the windows reach it through LinkUi.
class LinkEngine : public QObject {
    Q_OBJECT
public:
    // Timer ticks come from QTimers, or only from explicit tick()/endOfTransmission() calls so
    // that tests step the link deterministically.
    enum class Ticks { Timers, Manual };

    LinkEngine(LinkState& state, LinkUi& ui, Ticks ticks = Ticks::Timers,
               QObject* parent = nullptr);
    ~LinkEngine() override;
    Q_DISABLE_COPY_MOVE(LinkEngine)

    [[nodiscard]] LinkState& state() const { return state_; }
    [[nodiscard]] LinkUi& ui() const { return ui_; }
    [[nodiscard]] CommandSender& sender() { return sender_; }
    [[nodiscard]] ReplyDispatcher& dispatcher() { return dispatcher_; }
    [[nodiscard]] PollingCycle& polling() { return polling_; }

    // --- Port -----------------------------------------------------------------------------------
    // Replaces the back-end (tests pass their own; the application passes createTransport).
    void setTransport(std::unique_ptr<Transport> transport);
    [[nodiscard]] Transport* transport() const { return transport_.get(); }
    // A device path that overrides the port number for this run (command line --port).
    void setDeviceOverride(const QString& device) { deviceOverride_ = device; }
    [[nodiscard]] QString deviceOverride() const { return deviceOverride_; }
    // The device the current settings open.
    [[nodiscard]] QString device() const;
    // Opening at start-up: Timer1 started, the port opened when online, the first poll sent.
    void start(int pollIntervalMs);
    // Closes and opens the port again with the current port, back-end and baud rate.
    OpenResult reopen();
    [[nodiscard]] const OpenResult& lastOpen() const { return lastOpen_; }
    // What to tell a user after a failed opening; its line follows the reason.
    using OpenAdvice = std::function<QString(const OpenResult& failed)>;
    void setOpenAdvice(OpenAdvice advice) { openAdvice_ = std::move(advice); }

    // --- Sending and receiving ------------------------------------------------------------------
    bool SendCommand(const QString& text) { return sender_.SendCommand(text); }
    bool PostCommand(const QString& text) { return sender_.PostCommand(text); }
    // Frames and writes one command text and arms Timer2 for its transmission time.
    void SendByteData(const QString& text);
    void DispatchReply(const QString& text);
    // The axis character of the configured axis, the start of every command text.
    [[nodiscard]] QString axisPrefix() const;
    // Sends the monitor poll for the configured axis.
    void sendPoll();

    // --- Controls of the windows ----------------------------------------------------------------
    void EnableControls(bool enable);
    void DisableTransferButtons();
    void DisableCommControls();
    void ShowBusyDialog();
    void HideDialog();
    // Ends a wave capture on the display side: idle, "reading" picture hidden, settings usable.
    void resetWaveDisplay();

    // --- Supervision: the only writers of LinkState::run() outside the engine's parts --------
    // A port search holds the link; its probes restart the re-send count.
    void beginSearch();
    void restartSupervision();
    // The search is over and its last probe no longer awaited.
    void endSearch();
    // The port went away or was closed by the user.
    void markPortClosed();
    // The monitor has answered (true) or will not answer any more (false).
    void setMonitorRunning(bool running);
    // The command that goes out at the next free slot of the monitor chain.
    void queueCommand(const QString& text);
    void dropQueuedCommand();
    // Nothing more is awaited or waits to go out.
    void abandonCommands();
    void beginTransfer(Transfer kind);
    void endTransfer(Transfer kind);
    void endAllTransfers();
    void setWaveState(WaveState state);
    // Tests set up a case directly.
    [[nodiscard]] LinkSupervision& supervisionForTests() { return run_; }

    // --- Timers ---------------------------------------------------------------------------------
    void tick() { polling_.tick(); }
    void endOfTransmission();
    [[nodiscard]] int pollIntervalMs() const { return pollIntervalMs_; }
    void setPollIntervalMs(int ms);
    [[nodiscard]] bool timer1Active() const { return timer1Active_; }
    [[nodiscard]] bool timer2Armed() const { return timer2Armed_; }
    [[nodiscard]] int timer2IntervalMs() const { return timer2IntervalMs_; }
    // Timer1 stands still while a modal message of the link is open; pauses nest.
    void pauseTimer1();
    void resumeTimer1();

    // Modal messages of the link, with Timer1 paused while they are open.
    void showError(const QString& text, const QString& caption);
    [[nodiscard]] bool askRetry(const QString& text, const QString& caption);
    void showNotice(const QString& text, const QString& caption);
    void showWarning(const QString& text, const QString& caption);

    // Records every frame written and every reply assembled while set; nullptr stops it.
    void setFrameTrace(FrameTrace* trace) { trace_ = trace; }
    [[nodiscard]] FrameTrace* frameTrace() const { return trace_; }

    // The time the status bar clock shows; tests fix it.
    void setClock(std::function<QDateTime()> clock) { clock_ = std::move(clock); }
    [[nodiscard]] QDateTime now() const { return clock_(); }

signals:
    // The open port's device went away (Transport::portLost).
    void portLost(const QString& reason);

private:
    // The engine's parts write the supervision directly.
    friend class CommandSender;
    friend class ReplyDispatcher;
    friend class PollingCycle;
    [[nodiscard]] LinkSupervision& supervision() { return run_; }
    void applyTimer1();
    [[nodiscard]] bool& transferFlag(Transfer kind);

    LinkState& state_;
    LinkSupervision& run_;
    LinkUi& ui_;
    const Ticks ticks_;
    std::unique_ptr<Transport> transport_;
    CommandSender sender_;
    ReplyDispatcher dispatcher_;
    PollingCycle polling_;
    QTimer timer1_;
    QTimer timer2_;
    QString deviceOverride_;
    OpenResult lastOpen_;
    OpenAdvice openAdvice_;
    FrameTrace* trace_ = nullptr;
    std::function<QDateTime()> clock_ = [] { return QDateTime::currentDateTime(); };
    int pollIntervalMs_ = 250;
    int timer2IntervalMs_ = 0;
    int timer1Pauses_ = 0;
    bool timer1Enabled_ = false;
    bool timer1Active_ = false;
    bool timer2Armed_ = false;
};

}  // namespace velora
