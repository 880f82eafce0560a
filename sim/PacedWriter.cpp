#include "sim/PacedWriter.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <ctime>

namespace velora::sim {

namespace {

constexpr qint64 BitsPerCharacter = 11;
constexpr qint64 NsPerSecond = 1000000000;
// How often the middle of a frame is handed on; only its last character is timed exactly.
constexpr qint64 StepNs = 1000000;
// A full line (the PC not reading) is tried again after this.
constexpr qint64 FullRetryNs = 1000000;
// A woken thread runs tens of microseconds after its timer fired; for a frame's final
// character the writer wakes this much early and waits the rest on the clock, as a UART would
// not be late.
constexpr qint64 EarlyWakeNs = 150000;

}  // namespace

qint64 PacedWriter::Item::endNs() const {
    return startNs + frame.size() * characterNs(baud);
}

PacedWriter::PacedWriter(PtyPort& port, QObject* parent) : QObject(parent), port_(port) {
    timerFd_ = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    if (timerFd_ < 0)
        qFatal("velora-sim: timerfd_create failed");
    wake_ = std::make_unique<QSocketNotifier>(timerFd_, QSocketNotifier::Read);
    connect(wake_.get(), &QSocketNotifier::activated, this, [this] {
        std::uint64_t expirations = 0;
        [[maybe_unused]] const ssize_t n = ::read(timerFd_, &expirations, sizeof expirations);
        pump();
    });
}

PacedWriter::~PacedWriter() {
    wake_.reset();
    ::close(timerFd_);
}

qint64 PacedWriter::nowNs() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<qint64>(t.tv_sec) * NsPerSecond + t.tv_nsec;
}

qint64 PacedWriter::characterNs(int baud) {
    return BitsPerCharacter * NsPerSecond / std::max(baud, 1);
}

void PacedWriter::enqueue(const QByteArray& frame, int baud, qint64 startNs) {
    Item item;
    item.frame = frame;
    item.baud = std::max(baud, 1);
    item.startNs = paced_ ? std::max(startNs, lineFreeNs_) : startNs;
    if (paced_)
        lineFreeNs_ = item.endNs();
    queue_.push_back(std::move(item));
    pump();
}

void PacedWriter::wakeAt(qint64 ns) {
    itimerspec due{};
    // Zero would disarm the timer; a time already past fires at once.
    const qint64 at = std::max<qint64>(ns, 1);
    due.it_value.tv_sec = static_cast<time_t>(at / NsPerSecond);
    due.it_value.tv_nsec = static_cast<long>(at % NsPerSecond);
    timerfd_settime(timerFd_, TFD_TIMER_ABSTIME, &due, nullptr);
}

void PacedWriter::pump() {
    while (!queue_.empty()) {
        const qint64 now = nowNs();
        Item& item = queue_.front();
        const qint64 size = item.frame.size();
        if (now < item.startNs && !paced_) {
            wakeAt(item.startNs);
            return;
        }
        // Characters whose last bit has arrived by now.
        const qint64 due =
            paced_ ? std::clamp<qint64>((now - item.startNs) / characterNs(item.baud), 0, size)
                   : size;
        if (due > item.written) {
            const qint64 n = port_.write(item.frame.constData() + item.written, due - item.written);
            if (n < 0) {
                // The line is gone; what was queued for it is lost too.
                queue_.clear();
                return;
            }
            item.written += n;
            if (item.written < due) {
                wakeAt(now + FullRetryNs);
                return;
            }
        }
        if (item.written < size) {
            const qint64 next = item.startNs + (item.written + 1) * characterNs(item.baud);
            const qint64 at = std::min(item.endNs(), std::max(next, now + StepNs));
            if (!paced_ || at != item.endNs()) {
                wakeAt(at);
                return;
            }
            if (at - now > EarlyWakeNs) {
                wakeAt(at - EarlyWakeNs);
                return;
            }
            while (nowNs() < at) {
            }
            continue;
        }
        lastFrameLateNs_ = paced_ ? std::max<qint64>(now - item.endNs(), 0) : 0;
        const QByteArray sent = item.frame;
        queue_.pop_front();
        emit frameSent(sent);
    }
}

}  // namespace velora::sim
