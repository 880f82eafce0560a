#pragma once

#include <QString>
#include <QtGlobal>

#include <chrono>
#include <functional>
#include <vector>

namespace velora {

// The last frames that went over the wire: every command text the link writes and every reply
// it assembles, with a monotonic timestamp. The link records into it only while one is attached
// (LinkEngine::setFrameTrace), so a program nobody traces pays one pointer test per frame.
class FrameTrace {
public:
    enum class Direction { Sent, Received };

    struct Entry {
        qint64 timeUs = 0;  // since the trace was created
        Direction direction = Direction::Sent;
        QString text;  // axis character, code, data; no frame bytes
        // For a reply: microseconds since the last frame written, -1 when none was.
        qint64 sinceRequestUs = -1;
        quint64 sequence = 0;  // 1 for the first entry ever recorded
        // A reply that did not answer the command outstanding, and was not taken.
        bool dropped = false;
    };

    static constexpr int DefaultCapacity = 10000;

    explicit FrameTrace(int capacity = DefaultCapacity);
    Q_DISABLE_COPY_MOVE(FrameTrace)

    void recordSent(const QString& text);
    void recordReceived(const QString& text, bool dropped = false);

    // Entries still held whose sequence is above `after`, oldest first (0: all of them).
    [[nodiscard]] std::vector<Entry> entriesAfter(quint64 after) const;
    // The sequence of the newest entry; 0 before the first.
    [[nodiscard]] quint64 lastSequence() const { return recorded_; }
    [[nodiscard]] int size() const;
    [[nodiscard]] int capacity() const { return static_cast<int>(ring_.size()); }
    void clear();

    // Called for every entry as it is recorded (the command line writes each one out).
    void setListener(std::function<void(const Entry&)> listener) {
        listener_ = std::move(listener);
    }

    // One line of a trace file or of the trace window:
    // "<time us> > <text>" for a command, "<time us> < <text> (+<us> us)" for a reply, with
    // " dropped" after a reply that was not taken.
    [[nodiscard]] static QString formatLine(const Entry& entry);
    // Polling codes (lower case) are the monitor's and the wave's chatter.
    [[nodiscard]] static bool isPolling(const Entry& entry);

private:
    void record(Direction direction, const QString& text, qint64 sinceRequestUs, qint64 now,
                bool dropped = false);
    [[nodiscard]] qint64 nowUs() const;

    std::chrono::steady_clock::time_point start_;
    std::vector<Entry> ring_;
    quint64 recorded_ = 0;
    quint64 cleared_ = 0;  // entries up to this sequence were cleared
    qint64 lastSentUs_ = -1;
    std::function<void(const Entry&)> listener_;
};

}  // namespace velora
