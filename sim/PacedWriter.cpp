#include "sim/PacedWriter.h"

#include <algorithm>

namespace velora::sim {

namespace {

constexpr int BitsPerCharacter = 11;
constexpr int PumpIntervalMs = 2;

}  // namespace

PacedWriter::PacedWriter(PtyPort& port, QObject* parent) : QObject(parent), port_(port) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(PumpIntervalMs);
    connect(&timer_, &QTimer::timeout, this, &PacedWriter::pump);
    clock_.start();
}

void PacedWriter::enqueue(const QByteArray& frame, int baud, int delayMs) {
    Item item;
    item.frame = frame;
    item.baud = std::max(baud, 1);
    item.dueMs = clock_.elapsed() + std::max(delayMs, 0);
    queue_.push_back(std::move(item));
    if (!timer_.isActive())
        timer_.start();
    // An immediate frame need not wait for the first tick.
    if (delayMs <= 0 && queue_.size() == 1)
        pump();
}

qint64 PacedWriter::allowedBytes(const Item& item, qint64 now) const {
    const qint64 size = item.frame.size();
    if (!paced_)
        return size;
    // The first character goes at once; each further one after its 11 bit times.
    const qint64 due = 1 + (now - item.startedMs) * item.baud / (BitsPerCharacter * 1000);
    return std::min(size, due);
}

void PacedWriter::pump() {
    const qint64 now = clock_.elapsed();
    while (!queue_.empty()) {
        Item& item = queue_.front();
        if (item.startedMs < 0) {
            if (now < item.dueMs)
                return;
            item.startedMs = now;
        }
        const qint64 allowed = allowedBytes(item, now);
        if (allowed > item.written) {
            const qint64 n =
                port_.write(item.frame.constData() + item.written, allowed - item.written);
            if (n < 0) {
                // The line is gone; what was queued for it is lost too.
                queue_.clear();
                break;
            }
            item.written += n;
        }
        if (item.written < item.frame.size())
            return;
        const QByteArray sent = item.frame;
        queue_.pop_front();
        emit frameSent(sent);
    }
    timer_.stop();
}

}  // namespace velora::sim
