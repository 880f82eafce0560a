#pragma once

#include <array>

namespace velora::sim {

// The drive's eight alarms: which are active now, and the last eight that occurred.
class AlarmState {
public:
    static constexpr int AlarmCount = 8;
    static constexpr int HistoryLength = 8;

    // Alarm numbers 1..8: EEPROM, encoder, system, over deviation, over current, over heat,
    // power voltage, control voltage.
    enum Number : int {
        EepromError = 1,
        EncoderError = 2,
        SystemError = 3,
        OverDeviation = 4,
        OverCurrent = 5,
        OverHeat = 6,
        PowerVoltageError = 7,
        ControlVoltageError = 8,
    };

    // Activates alarm n and records it as the newest history entry; an alarm that is already
    // active is not recorded twice. Numbers outside 1..8 are ignored; returns whether n is valid.
    bool raise(int number);
    void reset() { mask_ = 0; }
    void clearHistory() { history_.fill(0); }

    [[nodiscard]] int mask() const { return mask_; }
    [[nodiscard]] bool active() const { return mask_ != 0; }
    // The alarm code of the monitor: the lowest active alarm number, 0 when none.
    [[nodiscard]] int code() const;
    // Entry 0 is the newest; 0 marks an empty entry.
    [[nodiscard]] const std::array<int, HistoryLength>& history() const { return history_; }

private:
    int mask_ = 0;
    std::array<int, HistoryLength> history_{};
};

}  // namespace velora::sim
