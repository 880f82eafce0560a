#include "sim/FrameReader.h"

#include <QString>

namespace velora::sim {

namespace {

constexpr char Stx = 0x02;
constexpr char Eot = 0x04;

}  // namespace

QStringList FrameReader::feed(const QByteArray& bytes) {
    QStringList texts;
    for (const char c : bytes) {
        if (c == Stx) {
            buffer_.clear();
            inFrame_ = true;
        } else if (!inFrame_) {
            continue;
        } else if (c == Eot) {
            texts << QString::fromLatin1(buffer_);
            clear();
        } else if (buffer_.size() >= MaxFrameLength) {
            clear();
        } else {
            buffer_.append(c);
        }
    }
    return texts;
}

void FrameReader::clear() {
    buffer_.clear();
    inFrame_ = false;
}

}  // namespace velora::sim
