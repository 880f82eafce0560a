#include "MonitorPath.h"

#include "BenchApplication.h"
#include "DriveThread.h"
#include "LineTime.h"
#include "Percentiles.h"
#include "WholeProgram.h"

#include "core/link/Transport.h"

#include <QElapsedTimer>

#include <sys/resource.h>
#include <vector>

namespace velora::bench {

namespace {

double processCpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

}  // namespace

MonitorPathResult measureMonitorPath(int baud, int replyWaitMs, int runSeconds, bool usbAdapter) {
    DriveThread drive(baud, replyWaitMs, {QStringLiteral("ma")});
    drive.open();
    MonitorPathResult result;
    result.baud = baud;
    {
        WholeProgram program({baud, drive.device(), true, usbAdapter});
        // Connected after the engine's own handler: runs once the next request has been written.
        std::vector<qint64> handlingNs;
        QObject::connect(program.window().engine().transport(), &Transport::replyReceived,
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
        program.global().Link.RealTimeMonitor = false;
        runFor(100);
        result.handlingMedianMs = percentileMs(handlingNs, 0.5);
        result.handlingP99Ms = percentileMs(handlingNs, 0.99);
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
    result.simLateMedianMs = percentileMs(drive.lateNs, 0.5);
    result.simLateP99Ms = percentileMs(drive.lateNs, 0.99);
    result.simLateMeanMs = meanMs(drive.lateNs);
    result.turnaroundMeanMs = meanMs(drive.gapsNs);
    result.turnaroundMedianMs = percentileMs(drive.gapsNs, 0.5);
    result.turnaroundP99Ms = percentileMs(drive.gapsNs, 0.99);
    return result;
}

}  // namespace velora::bench
