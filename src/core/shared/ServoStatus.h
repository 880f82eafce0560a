#pragma once

#include <QtGlobal>

namespace velora {

// The drive's 32-bit servo status word, as the last monitor reply reported it.
class ServoStatus {
public:
    constexpr explicit ServoStatus(quint32 word) : word_(word) {}

    [[nodiscard]] constexpr bool bit(int n) const { return (word_ >> n) & 1U; }
    [[nodiscard]] constexpr bool servoOn() const { return bit(0); }
    [[nodiscard]] constexpr bool alarm() const { return bit(1); }
    [[nodiscard]] constexpr bool emergencyStop() const { return bit(2); }
    [[nodiscard]] constexpr bool pointTableRunning() const { return bit(13); }
    [[nodiscard]] constexpr bool zeroReturnFinished() const { return bit(15); }
    [[nodiscard]] constexpr quint32 word() const { return word_; }

private:
    quint32 word_;
};

}  // namespace velora
