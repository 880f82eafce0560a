#include "support/PtyPair.h"

#include <QDeadlineTimer>
#include <QtTest>

#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

namespace velora::test {

PtyPair::PtyPair() {
    master_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (master_ < 0)
        return;
    if (grantpt(master_) != 0 || unlockpt(master_) != 0) {
        ::close(master_);
        master_ = -1;
        return;
    }
    slavePath_ = QString::fromLocal8Bit(ptsname(master_));
    termios raw{};
    tcgetattr(master_, &raw);
    cfmakeraw(&raw);
    tcsetattr(master_, TCSANOW, &raw);
}

PtyPair::~PtyPair() {
    if (master_ >= 0)
        ::close(master_);
}

QByteArray PtyPair::read(int count, int timeoutMs) const {
    QByteArray received;
    QDeadlineTimer deadline(timeoutMs);
    char chunk[256];
    while (received.size() < count && !deadline.hasExpired()) {
        const auto n = ::read(master_, chunk, sizeof chunk);
        if (n > 0) {
            received.append(chunk, n);
        } else {
            QTest::qWait(5);
        }
    }
    return received;
}

}  // namespace velora::test
