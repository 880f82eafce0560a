#pragma once

#include <QtGlobal>

#include <array>

namespace velora {

// The captured waves and the two settings every view of them shares. Slot 0 receives a new
// record, slot 1 is the wave shown as "now", slot 2 the previous one.
struct WaveStore {
    static constexpr int SlotCount = 3;
    static constexpr int SampleCount = 250;
    static constexpr int ChannelCount = 2;  // 0 velocity [rpm], 1 torque command [0.1 %]

    using Channels = std::array<qint16, ChannelCount>;
    using Record = std::array<Channels, SampleCount>;
    using LogicRecord = std::array<quint16, SampleCount>;

    std::array<Record, SlotCount> WaveSamples{};
    std::array<LogicRecord, SlotCount> WaveLogic{};
    // The trigger's place in the record in 1/256 of its length: 0 first sample, 256 the end.
    int TriggerPosition = 128;
    // Each channel's zero line in percent of the picture height from the bottom (0-100).
    std::array<int, ChannelCount> ZeroLevel{50, 50};

    [[nodiscard]] qint16 sample(int slot, int i, int channel) const {
        return WaveSamples[static_cast<std::size_t>(slot)][static_cast<std::size_t>(i)]
                          [static_cast<std::size_t>(channel)];
    }
    [[nodiscard]] quint16 logic(int slot, int i) const {
        return WaveLogic[static_cast<std::size_t>(slot)][static_cast<std::size_t>(i)];
    }

    // A new record in slot 0 becomes "now"; the former "now" becomes "previous".
    void shiftSlots() {
        WaveSamples[2] = WaveSamples[1];
        WaveLogic[2] = WaveLogic[1];
        WaveSamples[1] = WaveSamples[0];
        WaveLogic[1] = WaveLogic[0];
    }
};

}  // namespace velora
