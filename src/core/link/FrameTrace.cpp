#include "core/link/FrameTrace.h"

#include "core/link/WireFormat.h"

#include <algorithm>

namespace velora {

FrameTrace::FrameTrace(int capacity)
    : start_(std::chrono::steady_clock::now()),
      ring_(static_cast<std::size_t>(std::max(capacity, 1))) {
}

qint64 FrameTrace::nowUs() const {
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() -
                                                                 start_)
        .count();
}

void FrameTrace::recordSent(const QString& text) {
    const qint64 now = nowUs();
    lastSentUs_ = now;
    record(Direction::Sent, text, -1, now);
}

void FrameTrace::recordReceived(const QString& text, bool dropped) {
    const qint64 now = nowUs();
    record(Direction::Received, text, lastSentUs_ < 0 ? -1 : now - lastSentUs_, now, dropped);
}

void FrameTrace::record(Direction direction, const QString& text, qint64 sinceRequestUs, qint64 now,
                        bool dropped) {
    ++recorded_;
    // The ring overwrites its oldest slot; QString's shared data makes the copy cheap.
    Entry& slot = ring_[static_cast<std::size_t>((recorded_ - 1) % ring_.size())];
    slot.timeUs = now;
    slot.direction = direction;
    slot.text = text;
    slot.sinceRequestUs = sinceRequestUs;
    slot.sequence = recorded_;
    slot.dropped = dropped;
    if (listener_)
        listener_(slot);
}

int FrameTrace::size() const {
    return static_cast<int>(std::min<quint64>(recorded_ - cleared_, ring_.size()));
}

std::vector<FrameTrace::Entry> FrameTrace::entriesAfter(quint64 after) const {
    const quint64 oldest = recorded_ - static_cast<quint64>(size()) + 1;
    std::vector<Entry> out;
    for (quint64 seq = std::max(after + 1, oldest); seq <= recorded_; ++seq)
        out.push_back(ring_[static_cast<std::size_t>((seq - 1) % ring_.size())]);
    return out;
}

void FrameTrace::clear() {
    // The sequence goes on, so a reader that polls with entriesAfter() sees no old entry again.
    cleared_ = recorded_;
}

QString FrameTrace::formatLine(const Entry& entry) {
    if (entry.direction == Direction::Sent)
        return QStringLiteral("%1 > %2").arg(entry.timeUs, 12).arg(entry.text);
    const QString since = entry.sinceRequestUs < 0
                              ? QString()
                              : QStringLiteral(" (+%1 us)").arg(entry.sinceRequestUs);
    const QString dropped = entry.dropped ? QStringLiteral(" dropped") : QString();
    return QStringLiteral("%1 < %2%3%4").arg(entry.timeUs, 12).arg(entry.text, since, dropped);
}

bool FrameTrace::isPolling(const Entry& entry) {
    return wire::isPollingCode(wire::codeOf(entry.text));
}

}  // namespace velora
