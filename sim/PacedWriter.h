#pragma once

#include "sim/PtyPort.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <deque>

namespace velora::sim {

// Sends reply frames one after another, each no earlier than its due time and, when paced, no
// faster than its line rate: 11 bit times per character for 8E1 (start, 8 data, parity,
// stop). The frames leave in pieces on a short timer, never by sleeping.
class PacedWriter : public QObject {
    Q_OBJECT
public:
    explicit PacedWriter(PtyPort& port, QObject* parent = nullptr);
    Q_DISABLE_COPY_MOVE(PacedWriter)

    void setPaced(bool paced) { paced_ = paced; }
    // Queues a whole frame, to start delayMs from now at baud.
    void enqueue(const QByteArray& frame, int baud, int delayMs);
    [[nodiscard]] bool idle() const { return queue_.empty(); }
    void clear() { queue_.clear(); }

signals:
    // A frame has been written completely.
    void frameSent(const QByteArray& frame);

private:
    struct Item {
        QByteArray frame;
        int baud = 9600;
        qint64 dueMs = 0;
        qint64 startedMs = -1;
        qint64 written = 0;
    };

    void pump();
    [[nodiscard]] qint64 allowedBytes(const Item& item, qint64 now) const;

    PtyPort& port_;
    QTimer timer_;
    QElapsedTimer clock_;
    std::deque<Item> queue_;
    bool paced_ = true;
};

}  // namespace velora::sim
