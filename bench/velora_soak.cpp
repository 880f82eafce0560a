// Soak: the whole program (main window, its windows and the real serial back-end on a
// pseudo-terminal) runs the real-time monitor chain against velora-sim --fast for N exchanges.
// Reports exchanges per second, CPU time per exchange and the resident memory at the start, the
// middle and the end, so a leak or a slow-down per exchange shows. Run by hand:
//   build/bench/velora-soak [exchanges, default 1000000]

#include "core/app/DriveSession.h"
#include "core/monitor/RealTimeMonitor.h"
#include "core/shared/Global.h"
#include "gui/app/AppLinkUi.h"
#include "gui/app/MDIParent.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <cstdio>

using namespace velora;

namespace {

long residentKiB() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    }
    return -1;
}

double cpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

}  // namespace

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const long exchanges = argc > 1 ? QByteArray(argv[1]).toLong() : 1000000;
    if (exchanges < 2) {
        std::fprintf(stderr, "usage: velora-soak [exchanges >= 2]\n");
        return 2;
    }

    // The drive in a process of its own, so the figures are Velora's alone.
    QProcess drive;
    drive.start(QStringLiteral(VELORA_SIM_PATH), {QStringLiteral("--fast")});
    if (!drive.waitForReadyRead(5000)) {
        std::fprintf(stderr, "velora-sim did not start: %s\n", qPrintable(drive.errorString()));
        return 1;
    }
    const QString device = QString::fromLocal8Bit(drive.readLine().trimmed());

    const QTemporaryDir settings;
    ShellSetup setup;
    setup.settings = SettingsStore(settings.path());
    setup.deviceOverride = device;
    Global global;
    MessageBoxes boxes;
    AppLinkUi linkUi(boxes);
    DriveSession session(global, linkUi, std::move(setup));
    MDIParent window(session, linkUi);
    window.messageBoxes().setAnswerer([](const MessageBoxes::Message& message) {
        std::fprintf(stderr, "message: %s\n", qPrintable(message.text));
        return QMessageBox::Cancel;
    });

    long count = 0;
    long rssStart = 0;
    long rssMiddle = 0;
    double cpuStart = 0;
    QElapsedTimer clock;
    QObject::connect(&window.realTimeMonitor(), &RealTimeMonitor::snapshot, &app,
                     [&](const MonitorSnapshot&) {
                         ++count;
                         // The first thousand exchanges warm up caches and fonts.
                         if (count == 1000) {
                             rssStart = residentKiB();
                             cpuStart = cpuSeconds();
                             clock.start();
                         } else if (count == 1000 + exchanges / 2) {
                             rssMiddle = residentKiB();
                         } else if (count == 1000 + exchanges) {
                             QApplication::quit();
                         }
                     });
    window.show();
    window.startUp();
    QApplication::exec();

    const double seconds = clock.nsecsElapsed() / 1e9;
    const double cpu = cpuSeconds() - cpuStart;
    const long rssEnd = residentKiB();
    std::printf("exchanges            %ld\n", exchanges);
    std::printf("exchanges per second %.0f\n", exchanges / seconds);
    std::printf("CPU per exchange     %.1f us\n", cpu / exchanges * 1e6);
    std::printf("RSS start/mid/end    %ld / %ld / %ld KiB (growth %ld KiB)\n", rssStart, rssMiddle,
                rssEnd, rssEnd - rssStart);
    drive.kill();
    drive.waitForFinished(2000);
    return 0;
}
