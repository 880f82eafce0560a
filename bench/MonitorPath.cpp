#include "MonitorPath.h"

#include "LineTime.h"

#include "app/MDIParent.h"
#include "app/ShellSetup.h"
#include "link/Transport.h"
#include "shared/Global.h"
#include "sim/ParameterCatalogue.h"
#include "sim/SimulatedLine.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QSemaphore>
#include <QSettings>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <pthread.h>
#include <sys/resource.h>
#include <algorithm>
#include <array>
#include <atomic>
#include <ctime>
#include <vector>

namespace velora::bench {

namespace {

constexpr std::array<int, 5> kRates{9600, 19200, 38400, 57600, 115200};

qint64 g_eventStartNs = 0;

double seconds(const timespec& t) {
    return static_cast<double>(t.tv_sec) + t.tv_nsec / 1e9;
}

double processCpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// Runs the main thread's event loop for ms, as the program does: no sleeping between events.
void runFor(int ms) {
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

// The simulated drive on its own thread, set to the rate and reply wait under test. It times
// each gap between the end of a monitor reply and the next request while recording.
class DriveThread : public QThread {
public:
    DriveThread(int baud, int replyWaitMs) : baud_(baud), replyWaitMs_(replyWaitMs) {}

    QSemaphore ready;
    QString device;
    clockid_t cpuClock{};
    std::atomic<bool> recording{false};
    std::atomic<int> replies{0};
    std::atomic<int> replyLength{0};
    // Read only after the thread has ended.
    std::vector<qint64> gapsNs;
    std::vector<qint64> lateNs;
    qint64 firstEndNs = -1;
    qint64 lastEndNs = -1;

    [[nodiscard]] double cpuSeconds() const {
        timespec t{};
        clock_gettime(cpuClock, &t);
        return seconds(t);
    }

protected:
    void run() override {
        sim::SimulatedLine line{sim::SimOptions{}};
        sim::DriveMemory& memory = line.bus().driveAt(0).model().memory();
        const auto index = std::find(kRates.begin(), kRates.end(), baud_) - kRates.begin();
        if (!memory.writeParam(sim::params::ComFormat, static_cast<qint32>(index), true) ||
            !memory.writeParam(sim::params::ReplyWait, replyWaitMs_, true)) {
            qFatal("drive refused the line settings");
        }
        (void)line.bus().driveAt(0).model().reset();
        if (!line.open())
            qFatal("simulator: %s", qPrintable(line.errorString()));
        device = line.devicePath();
        pthread_getcpuclockid(pthread_self(), &cpuClock);

        QElapsedTimer clock;
        clock.start();
        qint64 replyEnd = -1;
        QObject::connect(&line, &sim::SimulatedLine::replySent, [&](const QString& text) {
            replyEnd = -1;
            if (text.mid(1, 2) != QLatin1String("ma"))
                return;
            replyLength = static_cast<int>(text.size());
            replyEnd = clock.nsecsElapsed();
            if (recording) {
                ++replies;
                if (firstEndNs < 0)
                    firstEndNs = replyEnd;
                lastEndNs = replyEnd;
                lateNs.push_back(line.lastReplyLateNs());
            }
        });
        QObject::connect(&line, &sim::SimulatedLine::commandReceived, [&](const QString&) {
            if (recording && replyEnd >= 0)
                gapsNs.push_back(clock.nsecsElapsed() - replyEnd);
            replyEnd = -1;
        });
        ready.release();
        exec();
        line.close();
    }

private:
    const int baud_;
    const int replyWaitMs_;
};

double meanMs(const std::vector<qint64>& values) {
    if (values.empty())
        return 0;
    double sum = 0;
    for (const qint64 v : values)
        sum += static_cast<double>(v);
    return sum / static_cast<double>(values.size()) / 1e6;
}

double percentile(std::vector<qint64> values, double p) {
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const auto at = static_cast<std::size_t>(p * static_cast<double>(values.size() - 1));
    return static_cast<double>(values[at]) / 1e6;
}

}  // namespace

qint64 BenchApplication::nowNs() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<qint64>(t.tv_sec) * 1000000000 + t.tv_nsec;
}

qint64 BenchApplication::eventStartNs() {
    return g_eventStartNs;
}

bool BenchApplication::notify(QObject* receiver, QEvent* event) {
    // Received bytes come with a socket notifier's activation.
    if (event->type() == QEvent::SockAct)
        g_eventStartNs = nowNs();
    return QApplication::notify(receiver, event);
}

MonitorPathResult measureMonitorPath(int baud, int replyWaitMs, int runSeconds, bool usbAdapter) {
    DriveThread drive(baud, replyWaitMs);
    drive.start();
    drive.ready.acquire();

    QTemporaryDir dir;
    {
        QSettings stored(dir.filePath(QStringLiteral("Halvern Electronics Velora.conf")),
                         QSettings::IniFormat);
        stored.setValue(QStringLiteral("COMSetting/BaudRate"), QString::number(baud));
        stored.setValue(QStringLiteral("COMSetting/Online"), QStringLiteral("True"));
        stored.setValue(QStringLiteral("COMSetting/RtMon"), QStringLiteral("True"));
        stored.setValue(QStringLiteral("COMSetting/USB-RS232C"),
                        usbAdapter ? QStringLiteral("True") : QStringLiteral("False"));
    }
    MonitorPathResult result;
    result.baud = baud;
    {
        ShellSetup setup;
        setup.settings = SettingsStore(dir.path());
        setup.deviceOverride = drive.device;
        setup.siblingDirectory = dir.path();
        Global global;
        MDIParent window(global, std::move(setup));
        window.messageBoxes().setAnswerer([](const MessageBoxes::Message& message) {
            qWarning("unexpected message: %s", qPrintable(message.text));
            return QMessageBox::Cancel;
        });
        window.show();
        window.startUp();
        runFor(1000);  // identification and the first repaints
        // Connected after the engine's own handler: runs once the next request has been written.
        std::vector<qint64> handlingNs;
        QObject::connect(window.engine().transport(), &Transport::replyReceived,
                         [&](const QString& text) {
                             if (drive.recording && text.mid(1, 2) == QLatin1String("ma"))
                                 handlingNs.push_back(BenchApplication::nowNs() -
                                                      BenchApplication::eventStartNs());
                         });

        drive.recording = true;
        QElapsedTimer wall;
        wall.start();
        const double cpu0 = processCpuSeconds() - drive.cpuSeconds();
        runFor(runSeconds * 1000);
        drive.recording = false;
        const double cpu = processCpuSeconds() - drive.cpuSeconds() - cpu0;
        result.seconds = static_cast<double>(wall.nsecsElapsed()) / 1e9;
        result.exchanges = drive.replies;
        result.programCpuPercent = 100.0 * cpu / result.seconds;
        result.programCpuPerExchangeUs = result.exchanges > 0 ? cpu * 1e6 / result.exchanges : 0;
        global.Link.RealTimeMonitor = false;
        runFor(100);
        result.handlingMedianMs = percentile(handlingNs, 0.5);
        result.handlingP99Ms = percentile(handlingNs, 0.99);
    }
    drive.quit();
    drive.wait();

    // From the end of the first reply to the end of the last: whole exchanges only.
    if (drive.replies > 1)
        result.exchangesPerSecond =
            (drive.replies - 1) * 1e9 / static_cast<double>(drive.lastEndNs - drive.firstEndNs);
    // Request "0ma" and reply, each framed by STX and ETX/EOT.
    const int characters = 5 + drive.replyLength + 2;
    result.lineLimit = 1.0 / (characters * kBitsPerCharacter / baud + replyWaitMs / 1000.0);
    result.simLateMedianMs = percentile(drive.lateNs, 0.5);
    result.simLateP99Ms = percentile(drive.lateNs, 0.99);
    result.simLateMeanMs = meanMs(drive.lateNs);
    result.turnaroundMeanMs = meanMs(drive.gapsNs);
    result.turnaroundMedianMs = percentile(drive.gapsNs, 0.5);
    result.turnaroundP99Ms = percentile(drive.gapsNs, 0.99);
    return result;
}

}  // namespace velora::bench
