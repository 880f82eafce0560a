#include "DriveThread.h"

#include "LineTime.h"

#include "sim/ParameterCatalogue.h"
#include "sim/SimulatedLine.h"

#include <QElapsedTimer>

#include <pthread.h>
#include <algorithm>
#include <iterator>

namespace velora::bench {

DriveThread::DriveThread(int baud, int replyWaitMs, QStringList watchedCodes)
    : baud_(baud), replyWaitMs_(replyWaitMs), watched_(std::move(watchedCodes)) {
}

DriveThread::~DriveThread() {
    quit();
    wait();
}

void DriveThread::open() {
    start();
    ready_.acquire();
}

double DriveThread::cpuSeconds() const {
    timespec t{};
    clock_gettime(cpuClock_, &t);
    return static_cast<double>(t.tv_sec) + t.tv_nsec / 1e9;
}

void DriveThread::run() {
    sim::SimulatedLine line{sim::SimOptions{}};
    sim::DriveMemory& memory = line.bus().driveAt(0).model().memory();
    const auto index = std::find(std::begin(kBauds), std::end(kBauds), baud_) - std::begin(kBauds);
    if (!memory.writeParam(sim::params::ComFormat, static_cast<qint32>(index), true) ||
        !memory.writeParam(sim::params::ReplyWait, replyWaitMs_, true)) {
        qFatal("drive refused the line settings");
    }
    (void)line.bus().driveAt(0).model().reset();
    if (!line.open())
        qFatal("simulator: %s", qPrintable(line.errorString()));
    device_ = line.devicePath();
    pthread_getcpuclockid(pthread_self(), &cpuClock_);

    QElapsedTimer clock;
    clock.start();
    qint64 replyEnd = -1;
    QObject::connect(&line, &sim::SimulatedLine::replySent, [&](const QString& text) {
        replyEnd = -1;
        if (recording)
            characters += framed(text);
        if (!watched_.contains(text.mid(1, 2)))
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
    QObject::connect(&line, &sim::SimulatedLine::commandReceived, [&](const QString& text) {
        if (recording) {
            characters += framed(text);
            if (replyEnd >= 0)
                gapsNs.push_back(clock.nsecsElapsed() - replyEnd);
        }
        replyEnd = -1;
    });
    ready_.release();
    exec();
    line.close();
}

}  // namespace velora::bench
