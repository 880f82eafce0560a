#pragma once

#include "sim/LineSettings.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace velora::sim {

// The simulator's end of the line: the master side of a pseudo-terminal pair whose slave the
// PC opens like a serial port, or a serial device given by path. Non-blocking; received bytes
// arrive by signal.
class PtyPort : public QObject {
    Q_OBJECT
public:
    explicit PtyPort(QObject* parent = nullptr);
    ~PtyPort() override;
    Q_DISABLE_COPY_MOVE(PtyPort)

    // Creates a pseudo-terminal pair; devicePath() is then a name of the slave, fresh for this
    // pair, for the PC to open.
    [[nodiscard]] bool openPseudoTerminal();
    // Opens a serial device and sets it to baud, 8E1, raw.
    [[nodiscard]] bool openDevice(const QString& path, int baud);
    void close();
    [[nodiscard]] bool isOpen() const { return fd_ >= 0; }
    [[nodiscard]] QString devicePath() const { return path_; }
    [[nodiscard]] QString errorString() const { return error_; }

    // The line settings in force: on a pseudo-terminal those the PC set on its side.
    [[nodiscard]] LineSettings lineSettings() const;
    // Device mode only: the rate our side of the line runs at.
    bool setDeviceBaud(int baud);

    // Writes what the line takes now without blocking: the count written, 0 when the line is
    // full, -1 on error.
    [[nodiscard]] qint64 write(const char* data, qint64 size);

signals:
    void bytesReceived(const QByteArray& bytes);

private:
    void readAvailable();
    bool fail(const QString& what);

    int fd_ = -1;
    int slaveFd_ = -1;  // held open so that the master never sees a hang-up between clients
    QString path_;
    std::unique_ptr<QTemporaryDir> aliasDir_;  // holds the fresh name of a pseudo-terminal
    QString error_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace velora::sim
