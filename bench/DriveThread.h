#pragma once

#include <QSemaphore>
#include <QString>
#include <QStringList>
#include <QThread>

#include <atomic>
#include <ctime>
#include <vector>

namespace velora::bench {

// The simulated drive on a thread of its own, as a drive runs on its own hardware, set to the
// rate and reply wait under test. While recording it counts the characters crossing the line
// both ways, and times the replies whose code is watched: when each ended, how late against the
// line's timing, and the gap to the next request.
class DriveThread : public QThread {
public:
    DriveThread(int baud, int replyWaitMs, QStringList watchedCodes);
    ~DriveThread() override;
    Q_DISABLE_COPY_MOVE(DriveThread)

    // Starts the thread and returns once the drive's line is open (device() is set).
    void open();
    [[nodiscard]] const QString& device() const { return device_; }
    // CPU time of this thread alone.
    [[nodiscard]] double cpuSeconds() const;

    std::atomic<bool> recording{false};
    // Framed characters both ways while recording; the main thread may reset it.
    std::atomic<qint64> characters{0};
    std::atomic<int> replies{0};
    std::atomic<int> replyLength{0};
    // Read only after the thread has ended.
    std::vector<qint64> gapsNs;
    std::vector<qint64> lateNs;
    qint64 firstEndNs = -1;
    qint64 lastEndNs = -1;

protected:
    void run() override;

private:
    const int baud_;
    const int replyWaitMs_;
    const QStringList watched_;
    QSemaphore ready_;
    QString device_;
    clockid_t cpuClock_{};
};

}  // namespace velora::bench
