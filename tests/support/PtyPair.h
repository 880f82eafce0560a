#pragma once

#include <QByteArray>
#include <QString>

namespace velora::test {

// A pseudo-terminal pair: the test plays the drive on the master side, the link opens the
// slave device like any serial port.
class PtyPair {
public:
    PtyPair();
    ~PtyPair();
    PtyPair(const PtyPair&) = delete;
    PtyPair& operator=(const PtyPair&) = delete;

    [[nodiscard]] bool isValid() const { return master_ >= 0; }
    [[nodiscard]] QString slavePath() const { return slavePath_; }
    [[nodiscard]] int masterFd() const { return master_; }

    void write(const QByteArray& bytes) const;
    // Reads what the link wrote until `count` bytes arrived or the wait ends; events keep being
    // processed meanwhile so the port can flush.
    [[nodiscard]] QByteArray read(int count, int timeoutMs = 2000) const;

private:
    int master_ = -1;
    QString slavePath_;
};

}  // namespace velora::test
