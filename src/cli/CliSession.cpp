#include "cli/CliSession.h"

#include "core/connect/OpenAdvice.h"
#include "core/link/FrameTrace.h"
#include "core/link/LinkFailure.h"
#include "core/link/TransportFactory.h"
#include "core/link/WireFormat.h"
#include "core/params/ParamCatalogue.h"
#include "core/shared/SafeFileWrite.h"
#include "core/shared/SettingsStore.h"
#include "core/shared/TextCatalogue.h"

#include <QElapsedTimer>
#include <QEventLoop>

#include <cstdio>

#include <unistd.h>

namespace velora::cli {

namespace {
QString en(Text id) {
    return TextCatalogue::text(Language::English, id);
}
}  // namespace

CliSession::CliSession(const LinkChoice& choice, QObject* parent)
    : QObject(parent),
      ui_(global_.Link),
      engine_(global_.Link, ui_),
      params_(engine_, global_.Params),
      stderrIsTerminal_(isatty(STDERR_FILENO) != 0) {
    const SettingsStore store;
    store.loadComAndLanguage(global_);
    global_.RetryTime = store.loadRetryTime();
    InitParamTables(global_.Params);
    LinkState& s = global_.Link;
    // Messages in English whatever the program's language: scripts read them.
    s.LanguageId = Language::English;
    // Nothing is polled unless a subcommand asks for the monitor.
    s.RealTimeMonitor = false;
    if (choice.usb)
        s.UsbMode = true;
    if (choice.axis)
        s.AxisNumber = *choice.axis;
    if (choice.baud)
        s.BaudRate = *choice.baud;
    engine_.setDeviceOverride(choice.port);
    adviseOpenFailures(engine_);
    ui_.setFailureHandler([this](ExitCode code, const QString& line) { fail(code, line); });
    ui_.setNoticeHandler([](const QString& line) { out(line); });
    receiving_.setInterval(100);
    connect(&receiving_, &QTimer::timeout, this, [this] {
        if (global_.Link.ReceiveBuffer.isEmpty())
            return;  // not begun, or already handled
        progress(QStringLiteral("%1: %2 characters")
                     .arg(receivingLabel_)
                     .arg(global_.Link.ReceiveBuffer.size()));
    });
}

CliSession::~CliSession() {
    engine_.setFrameTrace(nullptr);
}

ExitCode CliSession::openLink(bool supervised) {
    LinkState& s = global_.Link;
    applyBackEnd(engine_, createTransport);
    if (supervised) {
        // The polling timer without the start-up's first poll: its reply would end the
        // supervision of the command that follows it.
        s.Online = false;
        engine_.start(global_.RetryTime);
    }
    s.Online = true;
    const OpenResult opened = engine_.reopen();
    if (!opened.ok) {
        fail(ExitCode::LinkFailure,
             en(Text::MsgCannotOpenPort) + QStringLiteral(": ") + opened.reason);
        return ExitCode::LinkFailure;
    }
    return ExitCode::Ok;
}

bool CliSession::reopenAt(int baud) {
    global_.Link.BaudRate = QString::number(baud);
    const OpenResult opened = engine_.reopen();
    if (!opened.ok) {
        fail(ExitCode::LinkFailure,
             en(Text::MsgCannotOpenPort) + QStringLiteral(": ") + opened.reason);
    }
    return opened.ok;
}

ExitCode CliSession::identify() {
    if (global_.Link.AxisNumber == wire::AllAxes) {
        fail(
            ExitCode::Usage,
            QStringLiteral("Axis 15 addresses every drive and none answers; give one axis, 0-14."));
        return ExitCode::Usage;
    }
    const QMetaObject::Connection c =
        connect(&params_, &ParamTransfer::identified, this, [this] { finish(); });
    engine_.SendCommand(engine_.axisPrefix() + QStringLiteral("PR77"));
    const ExitCode code = exec();
    disconnect(c);
    return code;
}

ExitCode CliSession::connectAndIdentify() {
    if (const ExitCode opened = openLink(); opened != ExitCode::Ok)
        return opened;
    return identify();
}

bool CliSession::mayWrite(driverules::Table table) {
    const std::optional<QString> question = driverules::writeQuestion(global_, engine_, table);
    if (question)
        fail(ExitCode::Usage, *question);
    return !question;
}

ExitCode CliSession::exec() {
    if (!done_ && !failed_) {
        QEventLoop loop;
        loop_ = &loop;
        // Every wait ends. A supervised command ends by its re-sends and the failure; whatever
        // else the run waits for (a command sent unsupervised while an alarm is pending, a
        // chain the drive stopped answering) gets as long as those rules would give it. A
        // supervised command gets twice that, so a supervision that stalled cannot hang a script.
        QElapsedTimer quiet;
        quiet.start();
        quint64 taken = engine_.dispatcher().taken();
        QTimer watch;
        connect(&watch, &QTimer::timeout, this, [this, &quiet, &taken] {
            const LinkState& s = global_.Link;
            // A capture waits for its trigger under a deadline of its own.
            if (s.run().Wave != WaveState::Idle || engine_.dispatcher().taken() != taken) {
                taken = engine_.dispatcher().taken();
                quiet.restart();
                return;
            }
            const qint64 budget = qint64{engine_.sender().waitLimit() + 1} *
                                  (CommandSender::MaxResends + 1) * engine_.pollIntervalMs() *
                                  (s.run().AwaitingReply ? 2 : 1);
            if (quiet.elapsed() > budget)
                fail(ExitCode::LinkFailure, unansweredLine());
        });
        watch.start(engine_.pollIntervalMs());
        loop.exec();
        loop_ = nullptr;
    }
    if (!failed_)
        done_ = false;
    return result_;
}

void CliSession::finish(ExitCode code) {
    if (failed_)
        return;
    result_ = code;
    done_ = true;
    if (loop_)
        loop_->quit();
}

QString CliSession::unansweredLine() const {
    const LinkState& s = global_.Link;
    return en(Text::MsgCommunicationFailure) + QStringLiteral(": ") +
           en(Text::MsgNoAnswer)
               .arg(linkfailure::request(engine_))
               .arg(s.AxisNumber)
               .arg(s.BaudRate, engine_.device());
}

void CliSession::fail(ExitCode code, const QString& line) {
    if (failed_)
        return;
    endProgress();
    QString message = line;
    const LinkState& s = global_.Link;
    const QString device = engine_.device();
    if (code == ExitCode::LinkFailure && !device.isEmpty() && line.contains(device)) {
        message += QLatin1Char(' ') + en(Text::CliCheckCablePortAxis);
    } else if (code == ExitCode::LinkFailure) {
        message += QStringLiteral(" (%1, axis %2, %3 baud). ")
                       .arg(engine_.device())
                       .arg(s.AxisNumber)
                       .arg(s.BaudRate) +
                   en(Text::CliCheckCablePortAxis);
    } else if (code == ExitCode::DriveRefusal && activity_) {
        message += QStringLiteral(" (%1)").arg(activity_());
    } else if (code == ExitCode::FileError) {
        if (!fileInUse_.isEmpty())
            message += QStringLiteral(": ") + fileInUse_;
        message += QStringLiteral(". ") + en(Text::CliCheckFileNameContents);
    }
    std::fprintf(stderr, "velora-cli: %s\n", qUtf8Printable(message));
    finish(code);
    failed_ = true;
    // Nothing more goes out: no re-sends, no polls after the error reply.
    global_.Link.RealTimeMonitor = false;
    engine_.abandonCommands();
}

void CliSession::traceTo(const QString& path) {
    tracePath_ = path;
    trace_ = std::make_unique<FrameTrace>();
    trace_->setListener([this](const FrameTrace::Entry& e) {
        traceText_ += FrameTrace::formatLine(e).toUtf8() + '\n';
    });
    engine_.setFrameTrace(trace_.get());
}

ExitCode CliSession::writeTrace() {
    if (!trace_)
        return ExitCode::Ok;
    engine_.setFrameTrace(nullptr);
    if (writeFileSafely(tracePath_, traceText_))
        return ExitCode::Ok;
    failed_ = false;  // the trace's failure is told even after another one
    fileInUse_ = tracePath_;
    fail(ExitCode::FileError, en(Text::MsgFileAccessError));
    return ExitCode::FileError;
}

void CliSession::out(const QString& line) {
    std::fprintf(stdout, "%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}

void CliSession::progress(const QString& text) {
    if (!stderrIsTerminal_)
        return;
    std::fprintf(stderr, "\r\033[K%s", qUtf8Printable(text));
    std::fflush(stderr);
    progressShown_ = true;
}

void CliSession::showReceiving(const QString& label) {
    if (!stderrIsTerminal_)
        return;
    receivingLabel_ = label;
    progress(label + QStringLiteral("..."));
    receiving_.start();
}

void CliSession::endProgress() {
    receiving_.stop();
    if (!progressShown_)
        return;
    std::fprintf(stderr, "\r\033[K");
    std::fflush(stderr);
    progressShown_ = false;
}

}  // namespace velora::cli
