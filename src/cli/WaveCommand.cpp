#include "cli/CliCommand.h"
#include "cli/CliSession.h"
#include "core/shared/SettingsStore.h"
#include "core/shared/TextCatalogue.h"
#include "core/wave/WaveCapture.h"
#include "core/wave/WaveFile.h"
#include "core/wave/WaveScale.h"

#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <limits>

#include <optional>

namespace velora::cli {

namespace {

const QString Trigger = QStringLiteral("trigger");
const QString Edge = QStringLiteral("edge");
const QString Position = QStringLiteral("position");
const QString TimeScale = QStringLiteral("timescale");
const QString Output = QStringLiteral("o");
const QString Timeout = QStringLiteral("timeout");
constexpr int DefaultTimeoutS = 60;

// The list index of a word in the order of the window's choice list.
std::optional<int> indexOf(const QStringList& words, const QString& word) {
    const qsizetype i = words.indexOf(word.toLower());
    return i < 0 ? std::nullopt : std::optional<int>(static_cast<int>(i));
}

// The window's choices changed by the options, the rest as the wave monitor last stored them.
// Returns the usage line for a wrong option, empty when all are right.
QString chooseSettings(Global& global, const CliArgs& args) {
    WaveMonSettings& w = global.WaveMon;
    SettingsStore().loadWaveMon(w);
    if (args.isSet(Trigger)) {
        const auto i = indexOf({QStringLiteral("velocity"), QStringLiteral("torque"),
                                QStringLiteral("logic"), QStringLiteral("manual")},
                               args.value(Trigger));
        if (!i)
            return QStringLiteral("--trigger is velocity, torque, logic or manual.");
        w.Trig = *i;
    }
    if (args.isSet(Edge)) {
        // "+ Up", "+ Down", "- Up", "- Down"; a plain up or down is on the + side.
        auto i = indexOf({QStringLiteral("+up"), QStringLiteral("+down"), QStringLiteral("-up"),
                          QStringLiteral("-down")},
                         args.value(Edge));
        if (!i)
            i = indexOf({QStringLiteral("up"), QStringLiteral("down")}, args.value(Edge));
        if (!i)
            return QStringLiteral("--edge is up, down, -up or -down.");
        w.Edge = *i;
    }
    if (args.isSet(TimeScale)) {
        bool ok = false;
        const int ms = args.value(TimeScale).toInt(&ok);
        const auto* at = std::find(wave::TimeScaleMs.cbegin(), wave::TimeScaleMs.cend(), ms);
        if (!ok || at == wave::TimeScaleMs.cend())
            return QStringLiteral("--timescale is 25, 50, 100, 200, 500 or 1000 (ms a division).");
        w.TimeScale = static_cast<int>(at - wave::TimeScaleMs.cbegin());
    }
    if (args.isSet(Position)) {
        // As typed into the window's percent box: limited to 20-80.
        const int placed = wave::triggerPositionFromText(args.value(Position), -1);
        if (placed < 0)
            return QStringLiteral("--position takes a percentage, 20-80.");
        w.TrgPosition = placed;
    }
    global.Wave.TriggerPosition = wave::limitTriggerPosition(w.TrgPosition);
    global.Wave.ZeroLevel = {wave::limitZeroLevel(w.Zero0), wave::limitZeroLevel(w.Zero1)};
    return {};
}

WaveFile::Settings fileSettings(const Global& global) {
    const WaveMonSettings& w = global.WaveMon;
    WaveFile::Settings s;
    s.Trig = w.Trig;
    s.LgcSel = w.LgcSel;
    s.Edge = w.Edge;
    s.Wave = w.Wave;
    s.VelScale = w.VelScale;
    s.VelZero = global.Wave.ZeroLevel[0];
    s.TqScale = w.TqScale;
    s.TqZero = global.Wave.ZeroLevel[1];
    s.TimeScale = w.TimeScale;
    s.TrigPosPercent = wave::percentFromTriggerPosition(global.Wave.TriggerPosition);
    return s;
}

// The wait for the trigger (--timeout) in seconds; 0 after telling the user what is wrong.
int readTimeout(CliSession& session, const CliArgs& args) {
    if (!args.isSet(Timeout))
        return DefaultTimeoutS;
    bool ok = false;
    const int timeoutS = args.value(Timeout).toInt(&ok);
    // The wait is one timer in milliseconds.
    if (!ok || timeoutS < 1 || timeoutS > std::numeric_limits<int>::max() / 1000) {
        session.fail(ExitCode::Usage,
                     QStringLiteral("--timeout takes whole seconds, 1 to 2147483."));
        return 0;
    }
    return timeoutS;
}

ExitCode captureWave(CliSession& session, const CliArgs& args) {
    const QString path = args.value(Output);
    if (path.isEmpty()) {
        session.fail(ExitCode::Usage, QStringLiteral("wave capture needs -o FILE.csv."));
        return ExitCode::Usage;
    }
    const int timeoutS = readTimeout(session, args);
    if (timeoutS == 0)
        return ExitCode::Usage;
    if (const QString wrong = chooseSettings(session.global(), args); !wrong.isEmpty()) {
        session.fail(ExitCode::Usage, wrong);
        return ExitCode::Usage;
    }
    if (const ExitCode up = session.connectAndIdentify(); up != ExitCode::Ok)
        return up;

    WaveCapture capture(session.engine(), session.global());
    QTimer deadline;
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, &session, [&] { capture.cancel(); });
    QObject::connect(&capture, &WaveCapture::armed, &session, [&] {
        session.progress(TextCatalogue::text(Language::English, Text::WaveTriggerWaiting));
    });
    QObject::connect(&capture, &WaveCapture::triggered, &session, [&] {
        session.progress(TextCatalogue::text(Language::English, Text::WaveTriggered));
    });
    QObject::connect(&capture, &WaveCapture::recordReceived, &session,
                     [&session] { session.finish(); });
    QObject::connect(&capture, &WaveCapture::cancelled, &session, [&] {
        // Not the link's fault, so not the link's advice: the line only names the wait.
        session.endProgress();
        std::fprintf(stderr, "velora-cli: No trigger within %d s; the capture was cancelled.\n",
                     timeoutS);
        session.finish(ExitCode::LinkFailure);
    });
    session.setActivity([] { return QStringLiteral("capturing a wave"); });
    deadline.start(timeoutS * 1000);
    capture.run();
    const ExitCode code = session.exec();
    deadline.stop();
    session.setActivity({});
    session.endProgress();
    if (code != ExitCode::Ok)
        return code;
    session.setFileInUse(path);
    if (WaveFile::write(path, fileSettings(session.global()), session.global().Wave) !=
        WaveFile::Status::Ok) {
        session.fail(ExitCode::FileError,
                     TextCatalogue::text(Language::English, Text::MsgFileAccessError));
        return ExitCode::FileError;
    }
    return ExitCode::Ok;
}

}  // namespace

CliCommand waveCommand() {
    CliCommand c;
    c.words = QStringList{QStringLiteral("wave"), QStringLiteral("capture")};
    c.synopsis = QStringLiteral(
        "wave capture [--trigger SOURCE] [--edge EDGE] [--position PERCENT] [--timescale MS] "
        "-o FILE.csv [--timeout S]");
    c.summary = QStringLiteral(
        "Arm a capture as the wave monitor's Start does, wait for the trigger and the record, "
        "and save it as a wave data file. What is not given is the wave monitor's last choice. "
        "SOURCE: velocity, torque, logic or manual; EDGE: up, down, -up or -down (up and down "
        "are the + edges); MS: 25, 50, 100, 200, 500 or 1000 a "
        "division; --position 20-80 %. After --timeout seconds (60 unless given) the "
        "capture is cancelled with the link-failure code and no file.");
    c.options = {
        QCommandLineOption(Trigger, QStringLiteral("Trigger source."), QStringLiteral("SOURCE")),
        QCommandLineOption(Edge, QStringLiteral("Trigger edge."), QStringLiteral("EDGE")),
        QCommandLineOption(Position, QStringLiteral("Trigger position in percent."),
                           QStringLiteral("PERCENT")),
        QCommandLineOption(TimeScale, QStringLiteral("Time scale in ms a division."),
                           QStringLiteral("MS")),
        QCommandLineOption(Output, QStringLiteral("The file to write."), QStringLiteral("FILE")),
        QCommandLineOption(Timeout, QStringLiteral("Seconds to wait for the record."),
                           QStringLiteral("S"))};
    c.run = captureWave;
    return c;
}

}  // namespace velora::cli
