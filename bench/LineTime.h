#pragma once

#include <QString>

// The line arithmetic every benchmark compares against: 8E1 characters on the wire.
namespace velora::bench {

inline constexpr int kBauds[] = {9600, 19200, 38400, 57600, 115200};
inline constexpr double kBitsPerCharacter = 11.0;  // start, 8 data, parity, stop

// Characters of a frame around a text (STX and the terminator).
inline int framed(const QString& text) {
    return static_cast<int>(text.size()) + 2;
}

}  // namespace velora::bench
