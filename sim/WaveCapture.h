#pragma once

#include <QtGlobal>

#include <vector>

namespace velora::sim {

// The trigger settings the PC sends with wm and wt.
struct WaveSettings {
    enum Source : int { Velocity = 0, TorqueCommand = 1, Logic = 2, Manual = 3 };
    enum LogicSignal : int { Fin = 0, TorqueLimit = 1, VelocityLimit = 2 };
    enum Edge : int { PlusUp = 0, PlusDown = 1, MinusUp = 2, MinusDown = 3 };

    int timeScale = 2;  // 25, 50, 100, 200, 500, 1000 ms/div
    int source = Velocity;
    int logic = Fin;
    int edge = PlusUp;
    int triggerPosition = 128;  // in 1/256 of the record

    // Ten divisions of 25 samples each: 1, 2, 4, 8, 20 or 40 ms per sample.
    [[nodiscard]] int samplePeriodMs() const;
    // The sample the trigger lands on.
    [[nodiscard]] int triggerIndex() const;
};

// One millisecond of the signals a capture can record.
struct WaveSnapshot {
    qint16 velocity = 0;  // rpm
    qint16 torque = 0;    // 0.1 %
    int logic = 0;        // bit 0 FIN, bit 1 torque limit, bit 2 velocity limit
};

struct WaveSample {
    qint16 velocity = 0;
    qint16 torque = 0;
    int logic = 0;  // 0 or 1, the chosen logic signal
};

// The drive's wave recorder. It keeps the last ten seconds of signals at all times, so that
// the samples before the trigger are there at once, even for a manual trigger.
class WaveCapture {
public:
    static constexpr int SampleCount = 250;
    // Trigger levels of the analogue signals: 10 rpm, 1.0 %.
    static constexpr int VelocityLevel = 10;
    static constexpr int TorqueLevel = 10;

    enum class State { Idle, Armed, Triggered };
    enum class Event { None, Triggered, Completed };

    WaveCapture();

    [[nodiscard]] const WaveSettings& settings() const { return settings_; }
    // New settings; an armed capture watches for the new trigger from now on.
    void setSettings(const WaveSettings& settings);
    void arm();
    void cancel() { state_ = State::Idle; }
    // Records one millisecond and reports what the capture did in it.
    [[nodiscard]] Event record(const WaveSnapshot& snapshot);

    [[nodiscard]] State state() const { return state_; }
    // The last completed record, SampleCount samples.
    [[nodiscard]] const std::vector<WaveSample>& samples() const { return samples_; }

private:
    [[nodiscard]] int signalOf(const WaveSnapshot& s) const;
    [[nodiscard]] bool isTrigger(int previous, int current) const;
    [[nodiscard]] const WaveSnapshot& at(qint64 ms) const;
    void buildRecord();

    WaveSettings settings_;
    WaveSettings capture_;  // the settings of the capture under way
    State state_ = State::Idle;
    std::vector<WaveSnapshot> history_;
    qint64 recorded_ = 0;  // milliseconds recorded so far; the newest is recorded_ - 1
    qint64 armedAt_ = 0;
    qint64 triggerAt_ = 0;
    bool havePrevious_ = false;
    int previous_ = 0;
    std::vector<WaveSample> samples_;
};

}  // namespace velora::sim
