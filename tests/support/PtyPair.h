#pragma once

#include <QByteArray>
#include <QString>

namespace velora::test {

// A pseudo-terminal pair: the test hears on the master side what the link writes to the
// slave device, which it opens like any serial port.
class PtyPair {
public:
    PtyPair();
    ~PtyPair();
    PtyPair(const PtyPair&) = delete;
    PtyPair& operator=(const PtyPair&) = delete;

    [[nodiscard]] QString slavePath() const { return slavePath_; }

    // Reads what the link wrote until `count` bytes arrived or the wait ends; events keep being
    // processed meanwhile so the port can flush.
    [[nodiscard]] QByteArray read(int count, int timeoutMs = 2000) const;

private:
    int master_ = -1;
    QString slavePath_;
};

}  // namespace velora::test
