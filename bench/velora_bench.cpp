// Link throughput against the paced simulator, and the engine's CPU cost per monitor exchange.
// Run by hand: build/bench/velora-bench. Prints a table for the README's Performance section.

#include "LoopbackTransport.h"
#include "link/LinkEngine.h"
#include "link/ReplyDispatcher.h"
#include "monitor/RealTimeMonitor.h"
#include "shared/Global.h"
#include "sim/SimulatedLine.h"
#include "support/FakeLinkUi.h"
#include "wave/WaveCapture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSysInfo>
#include <QTest>
#include <QThread>
#include <QTimer>

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

// Monitor exchanges per second with each reply sending the next poll, as the monitor chain does.
void monitorThroughput(int baudIndex) {
    PacedLink link(baudIndex);
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
    QTest::qWait(3000);
    const double seconds = timer.nsecsElapsed() / 1e9;
    const int counted = exchanges - before;
    state.RealTimeMonitor = false;  // the chain ends with the next reply
    QTest::qWait(200);
    const int characters = framed(QStringLiteral("0ma")) + framed(link.lastReply);
    const double limit = kBauds[baudIndex] / (kBitsPerCharacter * characters);
    const double rate = counted / seconds;
    printf(
        "| monitor exchanges/s at %6d baud (%d chars each) | >= 0.97 | %.1f of %.1f/s = %.3f |\n",
        kBauds[baudIndex], characters, rate, limit, rate / limit);
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
void engineCost() {
    Global global;
    test::FakeLinkUi ui;
    LinkEngine engine(global.Link, ui, LinkEngine::Ticks::Manual);
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
    printf("| engine CPU time per `ma` exchange (unpaced) | < 20 us | %.2f us |\n",
           perExchange * 1e6);
}

}  // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    printf("Velora link benchmark, %s, %s, %d cores\n\n",
           qPrintable(QDateTime::currentDateTime().toString(Qt::ISODate)),
           qPrintable(QSysInfo::prettyProductName()), QThread::idealThreadCount());
    printf("| measure | target | result |\n|---|---|---|\n");
    // "--wave": only the wave records.
    if (app.arguments().contains(QStringLiteral("--wave"))) {
        for (int i = 0; i < 5; ++i)
            waveRecord(i);
        return 0;
    }
    engineCost();
    for (int i = 0; i < 5; ++i)
        monitorThroughput(i);
    for (const char* code : {"pa", "ta", "ca"}) {
        for (int i = 0; i < 5; ++i)
            readAll(i, QLatin1String(code));
    }
    for (int i = 0; i < 5; ++i)
        waveRecord(i);
    return 0;
}
