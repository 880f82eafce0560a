// Link throughput against the paced simulator, and the engine's CPU cost per monitor exchange.
// Run by hand: build/bench/velora-bench. Prints a table for the README's Performance section.

#include "LoopbackTransport.h"
#include "ScanVersusSearch.h"
#include "app/MessageBoxes.h"
#include "link/FrameTrace.h"
#include "link/LinkEngine.h"
#include "link/ReplyDispatcher.h"
#include "link/TraceWindow.h"
#include "monitor/RealTimeMonitor.h"
#include "shared/Global.h"
#include "sim/SimulatedLine.h"
#include "support/FakeLinkUi.h"

#include <QApplication>
#include <QCheckBox>
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

namespace {

constexpr int kBauds[] = {9600, 19200, 38400, 57600, 115200};
constexpr double kBitsPerCharacter = 11.0;  // start, 8 data, parity, stop

// Characters of a frame around a text.
int framed(const QString& text) {
    return static_cast<int>(text.size()) + 2;
}

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

double threadCpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + now.tv_nsec / 1e9;
}

// Monitor exchanges per second with each reply sending the next poll, as the monitor chain does.
// With a trace window, it records every frame and shows them, as the user sees it.
void monitorThroughput(int baudIndex, bool traceWindow = false) {
    PacedLink link(baudIndex);
    MessageBoxes boxes;
    std::unique_ptr<TraceWindow> window;
    if (traceWindow) {
        window = std::make_unique<TraceWindow>(link.engine, boxes);
        window->show();
        window->findChild<QCheckBox*>(QStringLiteral("ChkRecord"))->setChecked(true);
    }
    int exchanges = 0;
    LinkState& state = link.global.Link;
    state.DriverVersion = 110;  // identified: the chain goes straight on with the next poll
    state.MonitorRunning = true;
    state.RealTimeMonitor = true;
    RealTimeMonitor monitor(link.engine);
    QObject::connect(&monitor, &RealTimeMonitor::snapshot, [&] { ++exchanges; });
    link.engine.sendPoll();
    QTest::qWait(300);  // settle
    const int before = exchanges;
    QElapsedTimer timer;
    timer.start();
    const double cpuStart = threadCpuSeconds();
    QTest::qWait(3000);
    const double seconds = timer.nsecsElapsed() / 1e9;
    const int counted = exchanges - before;
    // This thread runs the link, the simulator and the windows alike; what recording and
    // showing the trace add shows up here even on a busy machine.
    const double cpuPerExchange = (threadCpuSeconds() - cpuStart) / std::max(counted, 1);
    state.RealTimeMonitor = false;  // the chain ends with the next reply
    QTest::qWait(200);
    const int characters = framed(QStringLiteral("0ma")) + framed(link.lastReply);
    const double limit = kBauds[baudIndex] / (kBitsPerCharacter * characters);
    const double rate = counted / seconds;
    printf(
        "| monitor exchanges/s at %6d baud (%d chars each)%s | >= 0.97 | %.1f of %.1f/s = %.3f "
        "(%.0f us CPU each) |\n",
        kBauds[baudIndex], characters, traceWindow ? ", trace window recording" : "", rate, limit,
        rate / limit, cpuPerExchange * 1e6);
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

// A full wave record: armed with an immediate trigger at the end of the record, so the record
// is complete when it triggers; timed from the trigger reply to the end of the record.
void waveRecord(int baudIndex) {
    PacedLink link(baudIndex);
    QElapsedTimer timer;
    int recordLength = 0;
    double seconds = 0;
    link.engine.dispatcher().registerHandler(QStringLiteral("wr"), [&](const QString&) {
        timer.start();
        return ReplyStatus::Handled;
    });
    link.engine.dispatcher().registerHandler(QStringLiteral("wd"), [&](const QString& text) {
        seconds = timer.nsecsElapsed() / 1e9;
        recordLength = static_cast<int>(text.size());
        return ReplyStatus::Handled;
    });
    link.global.Link.WaveState = 1;
    link.exchange(QStringLiteral("0wm0300100"));  // 1 ms/sample, manual trigger, at the end
    if (recordLength == 0) {
        QEventLoop loop;
        QTimer::singleShot(30000, &loop, &QEventLoop::quit);
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            if (recordLength > 0)
                loop.quit();
        });
        poll.start(1);
        loop.exec();
    }
    if (recordLength == 0)
        qFatal("no wave record");
    const double limit = lineSeconds(recordLength + 2, kBauds[baudIndex]);
    printf("| wave record at %6d baud (%d chars) | >= 0.97 | %.3f s, limit %.3f s = %.3f |\n",
           kBauds[baudIndex], recordLength + 2, seconds, limit, limit / seconds);
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
    global.Link.MonitorRunning = true;
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

}  // namespace

// Arguments choose parts: "engine" (CPU cost and trace cost), "trace" (the monitor chain at
// 115200 baud without and with the trace window recording), "line" (all throughput against the
// paced simulator), "scan" (velora-cli scan against the port search); none runs all.
int main(int argc, char* argv[]) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QStringList parts = QCoreApplication::arguments().mid(1);
    const auto wanted = [&parts](const char* part) {
        return parts.isEmpty() || parts.contains(QLatin1String(part));
    };
    printf("Velora link benchmark, %s, %s, %d cores\n\n",
           qPrintable(QDateTime::currentDateTime().toString(Qt::ISODate)),
           qPrintable(QSysInfo::prettyProductName()), QThread::idealThreadCount());
    printf("| measure | target | result |\n|---|---|---|\n");
    if (wanted("engine"))
        traceCost();
    if (wanted("line") || wanted("trace")) {
        monitorThroughput(4);
        monitorThroughput(4, true);
    }
    if (wanted("line")) {
        for (int i = 0; i < 4; ++i)
            monitorThroughput(i);
        for (const char* code : {"pa", "ta", "ca"}) {
            for (int i = 0; i < 5; ++i)
                readAll(i, QLatin1String(code));
        }
        for (int i = 0; i < 5; ++i)
            waveRecord(i);
    }
    if (wanted("scan"))
        bench::scanVersusSearch();
    return 0;
}
