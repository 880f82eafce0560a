#include "sim/PtyPort.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>
#include <array>
#include <cerrno>
#include <cstring>

namespace velora::sim {

namespace {

struct SpeedEntry {
    speed_t speed;
    int baud;
};

constexpr std::array<SpeedEntry, 9> Speeds{{{B1200, 1200},
                                            {B2400, 2400},
                                            {B4800, 4800},
                                            {B9600, 9600},
                                            {B19200, 19200},
                                            {B38400, 38400},
                                            {B57600, 57600},
                                            {B115200, 115200},
                                            {B230400, 230400}}};

speed_t speedOf(int baud) {
    for (const SpeedEntry& e : Speeds) {
        if (e.baud == baud)
            return e.speed;
    }
    return B9600;
}

int baudOf(speed_t speed) {
    for (const SpeedEntry& e : Speeds) {
        if (e.speed == speed)
            return e.baud;
    }
    return 0;
}

// Raw 8E1 at baud, as a drive's UART runs.
bool setRaw8E1(int fd, int baud) {
    termios t{};
    if (tcgetattr(fd, &t) != 0)
        return false;
    cfmakeraw(&t);
    t.c_cflag &= ~static_cast<tcflag_t>(CSIZE | CSTOPB | PARODD | CRTSCTS);
    t.c_cflag |= CS8 | PARENB | CREAD | CLOCAL;
    t.c_cc[VMIN] = 0;
    t.c_cc[VTIME] = 0;
    cfsetispeed(&t, speedOf(baud));
    cfsetospeed(&t, speedOf(baud));
    return tcsetattr(fd, TCSANOW, &t) == 0;
}

}  // namespace

PtyPort::PtyPort(QObject* parent) : QObject(parent) {
}

PtyPort::~PtyPort() {
    close();
}

bool PtyPort::fail(const QString& what) {
    error_ = what + QLatin1String(": ") + QString::fromLocal8Bit(std::strerror(errno));
    close();
    return false;
}

bool PtyPort::openPseudoTerminal() {
    close();
    fd_ = posix_openpt(O_RDWR | O_NOCTTY);
    if (fd_ < 0)
        return fail(QStringLiteral("posix_openpt"));
    if (grantpt(fd_) != 0)
        return fail(QStringLiteral("grantpt"));
    if (unlockpt(fd_) != 0)
        return fail(QStringLiteral("unlockpt"));
    std::array<char, 256> name{};
    if (ptsname_r(fd_, name.data(), name.size()) != 0)
        return fail(QStringLiteral("ptsname"));
    path_ = QString::fromLocal8Bit(name.data());
    if (fcntl(fd_, F_SETFL, fcntl(fd_, F_GETFL) | O_NONBLOCK) != 0) {
        return fail(QStringLiteral("fcntl"));
    }
    slaveFd_ = ::open(name.data(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (slaveFd_ < 0)
        return fail(QStringLiteral("open ") + path_);
    // A client that does not set the line up still finds it raw, at the drive's default rate.
    if (!setRaw8E1(slaveFd_, 9600))
        return fail(QStringLiteral("tcsetattr"));
    // Clients open the line under a name of its own: a serial port's lock file is named after
    // the device, and a /dev/pts number comes back to the next user, who then finds the lock of
    // someone else's killed run and cannot remove it.
    aliasDir_ =
        std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/velora-line-XXXXXX"));
    const QString alias = aliasDir_->filePath(QStringLiteral("tty"));
    if (!aliasDir_->isValid() || !QFile::link(path_, alias))
        return fail(QStringLiteral("link ") + alias);
    path_ = alias;
    notifier_ = std::make_unique<QSocketNotifier>(fd_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &PtyPort::readAvailable);
    return true;
}

bool PtyPort::openDevice(const QString& path, int baud) {
    close();
    path_ = path;
    fd_ = ::open(path.toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (fd_ < 0)
        return fail(QStringLiteral("open ") + path);
    if (!setRaw8E1(fd_, baud))
        return fail(QStringLiteral("tcsetattr ") + path);
    notifier_ = std::make_unique<QSocketNotifier>(fd_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &PtyPort::readAvailable);
    return true;
}

void PtyPort::close() {
    notifier_.reset();
    if (slaveFd_ >= 0)
        ::close(slaveFd_);
    if (fd_ >= 0)
        ::close(fd_);
    slaveFd_ = -1;
    fd_ = -1;
    aliasDir_.reset();
}

LineSettings PtyPort::lineSettings() const {
    LineSettings line;
    termios t{};
    // On a master, the terminal attributes read are those of the slave, set by the PC. Only
    // the rate can be told: a pseudo-terminal forces 8 bits without parity whatever was set.
    if (fd_ < 0 || tcgetattr(fd_, &t) != 0)
        return line;
    line.baud = baudOf(cfgetospeed(&t));
    return line;
}

bool PtyPort::setDeviceBaud(int baud) {
    return slaveFd_ < 0 && fd_ >= 0 && setRaw8E1(fd_, baud);
}

qint64 PtyPort::write(const char* data, qint64 size) {
    if (fd_ < 0)
        return -1;
    const ssize_t n = ::write(fd_, data, static_cast<size_t>(size));
    if (n >= 0)
        return n;
    return (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR) ? 0 : -1;
}

void PtyPort::readAvailable() {
    std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t n = ::read(fd_, buffer.data(), buffer.size());
        if (n > 0) {
            emit bytesReceived(QByteArray(buffer.data(), static_cast<int>(n)));
            continue;
        }
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR))
            return;
        // Hang-up or error: pause listening briefly instead of spinning on the notifier.
        notifier_->setEnabled(false);
        QTimer::singleShot(100, this, [this] {
            if (notifier_)
                notifier_->setEnabled(true);
        });
        return;
    }
}

}  // namespace velora::sim
