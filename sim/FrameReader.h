#pragma once

#include <QByteArray>
#include <QStringList>

namespace velora::sim {

// Cuts the byte stream from the PC into command texts: STX starts a frame (and restarts one
// already begun), EOT ends it; bytes outside a frame are line noise and dropped.
class FrameReader {
public:
    // Longer frames are noise, not commands; the drive's buffer gives up on them.
    static constexpr int MaxFrameLength = 256;

    [[nodiscard]] QStringList feed(const QByteArray& bytes);
    void clear();

private:
    QByteArray buffer_;
    bool inFrame_ = false;
};

}  // namespace velora::sim
