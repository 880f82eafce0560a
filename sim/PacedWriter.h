#pragma once

#include "sim/PtyPort.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

#include <deque>
#include <memory>

namespace velora::sim {

// Sends reply frames one after another as a drive's UART would: each character reaches the PC
// when its last bit would have, 11 bit times per character for 8E1 (start, 8 data, parity,
// stop), and a frame starts no earlier than asked and not before the previous one has left.
// Characters leave in pieces of about a millisecond, as a serial port hands them on; the last
// one of a frame leaves on time, so the end of a reply is where the line puts it: the writer
// wakes on a high-resolution timer a little early and waits the rest on the clock.
class PacedWriter : public QObject {
    Q_OBJECT
public:
    explicit PacedWriter(PtyPort& port, QObject* parent = nullptr);
    ~PacedWriter() override;
    Q_DISABLE_COPY_MOVE(PacedWriter)

    // Unpaced, every frame is written whole as soon as it is due.
    void setPaced(bool paced) { paced_ = paced; }
    [[nodiscard]] bool paced() const { return paced_; }
    // Queues a whole frame to start on the line at startNs of the writer's clock (or when the
    // frame before it has left).
    void enqueue(const QByteArray& frame, int baud, qint64 startNs);
    [[nodiscard]] bool idle() const { return queue_.empty(); }
    void clear() {
        queue_.clear();
        lineFreeNs_ = 0;
    }

    // How much later than the line would have delivered it the last frame's final character
    // was written (the machine's wake-up delay, nothing the pacing adds).
    [[nodiscard]] qint64 lastFrameLateNs() const { return lastFrameLateNs_; }

    // The writer's clock: monotonic nanoseconds.
    [[nodiscard]] static qint64 nowNs();
    // One character's time on the line at baud.
    [[nodiscard]] static qint64 characterNs(int baud);

signals:
    // A frame has been written completely.
    void frameSent(const QByteArray& frame);

private:
    struct Item {
        QByteArray frame;
        int baud = 9600;
        qint64 startNs = 0;
        qint64 written = 0;
        [[nodiscard]] qint64 endNs() const;
    };

    void pump();
    void wakeAt(qint64 ns);

    PtyPort& port_;
    int timerFd_ = -1;
    std::unique_ptr<QSocketNotifier> wake_;
    std::deque<Item> queue_;
    qint64 lineFreeNs_ = 0;
    qint64 lastFrameLateNs_ = 0;
    bool paced_ = true;
};

}  // namespace velora::sim
