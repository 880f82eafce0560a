#include "BenchApplication.h"

#include <QEventLoop>
#include <QTimer>

#include <ctime>

namespace velora::bench {

namespace {

qint64 g_eventStartNs = 0;

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

void runFor(int ms) {
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

}  // namespace velora::bench
