// The real-time monitor through the whole program against the paced simulator, link throughput
// of the long replies, and the engine's CPU cost per monitor exchange. Run by hand:
//   build/bench/velora-bench [monitor] [--seconds N] [--rate BAUD] [--reply-wait MS] [--usb]
// "monitor" runs only the whole-program monitor rows, N seconds per rate (default 5), at one
// rate when given, with the drive's reply wait (parameter 44, default 0). Prints tables for
// the README's Performance section. "--usb" runs the monitor rows on the USB-RS232C back-end,
// "--wave" only the wave records, "scan" only velora-cli scan against the port search.

#include "BenchApplication.h"
#include "LineTime.h"
#include "LoopbackTransport.h"
#include "MonitorPath.h"
#include "ScanVersusSearch.h"
#include "core/link/FrameTrace.h"
#include "core/link/LinkEngine.h"
#include "core/link/ReplyDispatcher.h"
#include "core/link/TransportFactory.h"
#include "core/monitor/RealTimeMonitor.h"
#include "core/shared/Global.h"
#include "core/wave/WaveCapture.h"
#include "sim/SimulatedLine.h"
#include "support/FakeLinkUi.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSysInfo>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <ctime>
#include <memory>

using namespace velora;
using bench::framed;
using bench::kBauds;
using bench::kBitsPerCharacter;

namespace {

double lineSeconds(int characters, int baud) {
    return characters * kBitsPerCharacter / baud;
}

// Velora and a paced simulated drive at one baud rate.
struct PacedLink {
    explicit PacedLink(int baudIndex) {
        sim::SimOptions options;  // paced, one drive at axis 0
        line = std::make_unique<sim::SimulatedLine>(options);
        if (!line->open())
            qFatal("simulator: %s", qPrintable(line->errorString()));
        QObject::connect(line.get(), &sim::SimulatedLine::replySent,
                         [this](const QString& text) { lastReply = text; });
        global.Link.RealTimeMonitor = false;
        engine.setTransport(createTransport(BackEnd::Rs232, global.Link));
        engine.setDeviceOverride(line->devicePath());
        engine.start(250);
        // The drive answers at once (reply wait 0) and moves to the rate under test.
        exchange(QStringLiteral("0PW2C;0"));
        exchange(QStringLiteral("0PW2B;%1").arg(baudIndex));
        engine.SendCommand(QStringLiteral("0RT"));
        QTest::qWait(50);
        global.Link.BaudRate = QString::number(kBauds[baudIndex]);
        if (!engine.reopen().ok)
            qFatal("reopen failed");
        QTest::qWait(20);
    }

    // Sends text and waits for its reply; returns the seconds until the reply was dispatched.
    // The wait runs a real event loop: the simulator shares this thread, and a polling wait
    // that sleeps would stall its pacing.
    double exchange(const QString& text) {
        const QString code = text.mid(1, 2);
        QElapsedTimer timer;
        double seconds = -1;
        QEventLoop loop;
        engine.dispatcher().registerHandler(code, [&](const QString&) {
            seconds = timer.nsecsElapsed() / 1e9;
            loop.quit();
            return ReplyStatus::Handled;
        });
        QTimer::singleShot(30000, &loop, &QEventLoop::quit);
        timer.start();
        engine.SendCommand(text);
        loop.exec();
        if (seconds < 0)
            qFatal("no reply to %s", qPrintable(text));
        engine.dispatcher().unregisterHandler(code);
        return seconds;
    }

    Global global;
    test::FakeLinkUi ui;
    std::unique_ptr<sim::SimulatedLine> line;
    LinkEngine engine{global.Link, ui, LinkEngine::Ticks::Manual};
    QString lastReply;
};

// The monitor as a user gets it: the whole program against the paced drive.
void monitorPath(int baudIndex, int replyWaitMs, int seconds, bool usb) {
    const bench::MonitorPathResult r =
        bench::measureMonitorPath(kBauds[baudIndex], replyWaitMs, seconds, usb);
    const double rate = r.exchangesPerSecond;
    // The simulated drive is late by the machine's wake-up delays; counted as its own reply
    // wait, the rest is the program's share.
    const double driveLimit = 1.0 / (1.0 / r.lineLimit + r.simLateMeanMs / 1000.0);
    printf(
        "| %6d%s | %d ms | %.1f of %.1f/s = **%.3f** | %.3f | %.2f / %.2f / %.2f ms | "
        "%.3f / %.3f ms | %.1f %% (%.0f us) | %.3f / %.3f / %.2f ms |\n",
        r.baud, usb ? " USB" : "", replyWaitMs, rate, r.lineLimit, rate / r.lineLimit,
        rate / driveLimit, r.turnaroundMedianMs, r.turnaroundMeanMs, r.turnaroundP99Ms,
        r.handlingMedianMs, r.handlingP99Ms, r.programCpuPercent, r.programCpuPerExchangeUs,
        r.simLateMedianMs, r.simLateMeanMs, r.simLateP99Ms);
    fflush(stdout);
}

// One read-all against its line limit.
void readAll(int baudIndex, const QString& code) {
    PacedLink link(baudIndex);
    const QString command = QStringLiteral("0") + code;
    const double seconds = link.exchange(command);
    const int characters = framed(command) + framed(link.lastReply);
    const double limit = lineSeconds(characters, kBauds[baudIndex]);
    printf("| \"%s\" read-all at %6d baud (%d chars) | >= 0.97 | %.3f s, limit %.3f s = %.3f |\n",
           qPrintable(code), kBauds[baudIndex], characters, seconds, limit, limit / seconds);
}

// A full wave record through the wave handler: armed with an immediate trigger at the end of
// the record, so the record is complete when it triggers; timed from the trigger reply until
// the handler has stored and shifted the record.
void waveRecord(int baudIndex) {
    PacedLink link(baudIndex);
    WaveCapture capture(link.engine, link.global);
    QElapsedTimer timer;
    double seconds = 0;
    int characters = 0;
    QEventLoop loop;
    QObject::connect(&capture, &WaveCapture::triggered, [&timer] { timer.start(); });
    QObject::connect(&capture, &WaveCapture::recordReceived, [&] {
        seconds = timer.nsecsElapsed() / 1e9;
        characters = static_cast<int>(link.lastReply.size()) + 2;
        loop.quit();
    });
    // 1 ms/sample, manual trigger, at the end.
    link.global.WaveMon = {2, 1, 0, 0, 0, 0, 3, 256, 50, 50};
    link.global.Wave.TriggerPosition = 256;
    QTimer::singleShot(30000, &loop, &QEventLoop::quit);
    capture.run();
    loop.exec();
    if (seconds <= 0)
        qFatal("no wave record");
    const double limit = lineSeconds(characters, kBauds[baudIndex]);
    printf(
        "| wave record through the handler at %6d baud (%d chars) | <= 1.03 | %.3f s, line "
        "%.3f s = %.3f |\n",
        kBauds[baudIndex], characters, seconds, limit, seconds / limit);
}

double threadCpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + now.tv_nsec / 1e9;
}

// The engine's own work per monitor exchange: assembling the reply, dispatching it, decoding
// the monitor values, building and writing the next poll.
// With traced, every frame is also recorded in a frame trace.
double engineCost(bool traced) {
    Global global;
    test::FakeLinkUi ui;
    LinkEngine engine(global.Link, ui, LinkEngine::Ticks::Manual);
    FrameTrace trace;
    if (traced)
        engine.setFrameTrace(&trace);
    auto owned = std::make_unique<bench::LoopbackTransport>(global.Link);
    auto* port = owned.get();
    engine.setTransport(std::move(owned));
    global.Link.DriverVersion = 110;
    engine.setMonitorRunning(true);
    RealTimeMonitor monitor(engine);  // decodes each reply and sends the next poll
    const QByteArray reply = QByteArray(
                                 "\x02"
                                 "0ma") +
                             QByteArray(95, '0') + '\x03';
    constexpr int kExchanges = 200000;
    for (int i = 0; i < 1000; ++i)
        port->receive(reply);  // warm up
    const double start = threadCpuSeconds();
    for (int i = 0; i < kExchanges; ++i)
        port->receive(reply);
    const double perExchange = (threadCpuSeconds() - start) / kExchanges;
    printf("| engine CPU time per `ma` exchange (unpaced)%s | < 20 us | %.2f us |\n",
           traced ? ", frame trace recording" : "", perExchange * 1e6);
    return perExchange;
}

// What recording costs per exchange (one command and one reply): the difference of the two.
void traceCost() {
    const double off = engineCost(false);
    const double on = engineCost(true);
    printf("| frame trace recording per exchange (on minus off) | < 1 us | %.0f ns |\n",
           (on - off) * 1e9);
}

// The number after option in args, or fallback.
int intOption(const QStringList& args, const QString& option, int fallback) {
    const qsizetype at = args.indexOf(option);
    return at > 0 && at + 1 < args.size() ? args[at + 1].toInt() : fallback;
}

}  // namespace

int main(int argc, char* argv[]) {
    // The windows are drawn as on a screen, into memory.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    bench::BenchApplication app(argc, argv);
    const QStringList args = QApplication::arguments();
    const bool monitorOnly = args.contains(QStringLiteral("monitor"));
    const int seconds = intOption(args, QStringLiteral("--seconds"), 5);
    const int onlyRate = intOption(args, QStringLiteral("--rate"), 0);
    const int replyWait = intOption(args, QStringLiteral("--reply-wait"), 0);
    // The USB-RS232C back-end, at the three rates it offers.
    const bool usb = args.contains(QStringLiteral("--usb"));
    printf("Velora link benchmark, %s, %s, %d cores\n\n",
           qPrintable(QDateTime::currentDateTime().toString(Qt::ISODate)),
           qPrintable(QSysInfo::prettyProductName()), QThread::idealThreadCount());
    // "scan": velora-cli scan against the program's port search, and nothing else.
    if (args.contains(QStringLiteral("scan"))) {
        bench::scanVersusSearch();
        return 0;
    }
    // "--wave": only the wave records.
    if (args.contains(QStringLiteral("--wave"))) {
        printf("| measure | target | result |\n|---|---|---|\n");
        for (int i = 0; i < 5; ++i)
            waveRecord(i);
        return 0;
    }
    printf(
        "| baud | reply wait | monitor exchanges/s of line limit (>= 0.95) | the same, drive's "
        "own delays counted as reply wait | turnaround on the line, median / mean / p99 | in "
        "the program, median / p99 (<= 0.3 / 2 ms) | program CPU (<= 3 %%), per exchange | "
        "drive's reply end late, median / mean / p99 (< 0.2 ms) |\n"
        "|---|---|---|---|---|---|---|---|\n");
    for (int i = 0; i < 5; ++i) {
        if ((onlyRate == 0 || onlyRate == kBauds[i]) && (!usb || kBauds[i] <= 38400))
            monitorPath(i, replyWait, seconds, usb);
    }
    if (monitorOnly)
        return 0;
    printf("\n| measure | target | result |\n|---|---|---|\n");
    traceCost();
    for (const char* code : {"pa", "ta", "ca"}) {
        for (int i = 0; i < 5; ++i)
            readAll(i, QLatin1String(code));
    }
    for (int i = 0; i < 5; ++i)
        waveRecord(i);
    return 0;
}
