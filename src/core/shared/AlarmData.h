#pragma once

#include <QtGlobal>

#include <array>

namespace velora {

// The drive's alarms as the last alarm data reply ("AD") reported them.
struct AlarmData {
    static constexpr int AlarmCount = 8;
    static constexpr int HistoryLength = 8;

    // Bit n-1 is set while alarm n (1..8) is active.
    quint8 NowAlarm = 0;
    // Entries 0-7 as the drive lists them: alarm numbers 1..8, 0 for an empty entry.
    std::array<qint16, HistoryLength> AlarmHistory{};

    [[nodiscard]] constexpr bool active(int number) const {
        return number >= 1 && number <= AlarmCount && ((NowAlarm >> (number - 1)) & 1U) != 0;
    }
};

}  // namespace velora
