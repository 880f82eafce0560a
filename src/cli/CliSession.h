#pragma once

#include "cli/ConsoleLinkUi.h"
#include "cli/ExitCode.h"
#include "core/link/DriveRules.h"
#include "core/link/LinkEngine.h"
#include "core/params/ParamTransfer.h"
#include "core/shared/Global.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

class QEventLoop;

namespace velora {
class FrameTrace;
}

namespace velora::cli {

// How the command line chose the link; what is not given comes from the saved settings.
struct LinkChoice {
    QString port;  // a device path, overriding the settings' port number
    std::optional<int> axis;
    std::optional<QString> baud;
    bool usb = false;
};

// One run of velora-cli: the shared state from the saved settings (read, never written), the
// link engine with its console user interface, and the parameter transfer that identification
// needs. Subcommands drive the link through it and wait in exec() until they call finish();
// any failure the link reports ends the wait with its exit code and one line on stderr.
class CliSession : public QObject {
    Q_OBJECT
public:
    explicit CliSession(const LinkChoice& choice, QObject* parent = nullptr);
    ~CliSession() override;
    Q_DISABLE_COPY_MOVE(CliSession)

    [[nodiscard]] Global& global() { return global_; }
    [[nodiscard]] LinkState& link() { return global_.Link; }
    [[nodiscard]] LinkEngine& engine() { return engine_; }
    [[nodiscard]] ParamTransfer& params() { return params_; }

    // Opens the port at the chosen rate. With supervision the polling timer runs, so that
    // unanswered commands are re-sent and finally fail; without it nothing is sent unasked.
    [[nodiscard]] ExitCode openLink(bool supervised = true);
    // Reopens the port at another rate (the scan).
    [[nodiscard]] bool reopenAt(int baud);
    // The identification read "PR77": the drive is there and DriverVersion is known.
    [[nodiscard]] ExitCode identify();
    // Both of the above: what every command that talks to one drive starts with.
    [[nodiscard]] ExitCode connectAndIdentify();
    // The rule of the windows' Write Servo: a table goes only to the drive it came from. A
    // script cannot be asked, so another drive is refused (exit code Usage).
    [[nodiscard]] bool mayWrite(driverules::Table table);

    // Runs the event loop until finish() or a failure; returns at once after a failure.
    [[nodiscard]] ExitCode exec();
    void finish(ExitCode code = ExitCode::Ok);
    // Prints "velora-cli: <line>" on stderr, with what to do next for link and file failures,
    // and ends the run with code. Only the first failure of a run is told.
    void fail(ExitCode code, const QString& line);
    [[nodiscard]] bool failed() const { return failed_; }
    // The file a file error is about, named in its message.
    void setFileInUse(const QString& path) { fileInUse_ = path; }
    // What the link was doing, named in the message of a refusal (e.g. which parameter).
    void setActivity(std::function<QString()> activity) { activity_ = std::move(activity); }

    // Every frame of the run into path, written when the run ends.
    void traceTo(const QString& path);
    [[nodiscard]] ExitCode writeTrace();

    // A result line on stdout.
    static void out(const QString& line);
    // A progress line on stderr, redrawn in place; only when stderr is a terminal.
    void progress(const QString& text);
    // A progress line that counts the characters of a long reply as they arrive.
    void showReceiving(const QString& label);
    void endProgress();

private:
    // The link failure of a wait nothing else ends: which request, axis, rate and device.
    [[nodiscard]] QString unansweredLine() const;

    Global global_;
    ConsoleLinkUi ui_;
    LinkEngine engine_;
    ParamTransfer params_;
    std::unique_ptr<FrameTrace> trace_;
    QByteArray traceText_;
    QString tracePath_;
    QString fileInUse_;
    std::function<QString()> activity_;
    QTimer receiving_;
    QString receivingLabel_;
    QEventLoop* loop_ = nullptr;
    ExitCode result_ = ExitCode::Ok;
    bool done_ = false;
    bool failed_ = false;
    bool progressShown_ = false;
    const bool stderrIsTerminal_;
};

}  // namespace velora::cli
