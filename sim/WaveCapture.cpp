#include "sim/WaveCapture.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velora::sim {

namespace {

constexpr int HistoryMs = WaveCapture::SampleCount * 40;

}  // namespace

int WaveSettings::samplePeriodMs() const {
    static constexpr std::array<int, 6> Periods{1, 2, 4, 8, 20, 40};
    return Periods.at(static_cast<std::size_t>(std::clamp(timeScale, 0, 5)));
}

int WaveSettings::triggerIndex() const {
    const double exact = triggerPosition * double{WaveCapture::SampleCount} / 256.0;
    return std::clamp(static_cast<int>(std::nearbyint(exact)), 0, WaveCapture::SampleCount - 1);
}

WaveCapture::WaveCapture() : history_(HistoryMs), samples_(SampleCount) {
}

void WaveCapture::setSettings(const WaveSettings& settings) {
    settings_ = settings;
    // A record being taken keeps the settings it was triggered with.
    if (state_ == State::Armed)
        arm();
}

void WaveCapture::arm() {
    state_ = State::Armed;
    capture_ = settings_;
    armedAt_ = recorded_;
    havePrevious_ = false;
}

int WaveCapture::signalOf(const WaveSnapshot& s) const {
    switch (capture_.source) {
        case WaveSettings::Velocity:
            return s.velocity;
        case WaveSettings::TorqueCommand:
            return s.torque;
        default:
            return (s.logic >> capture_.logic) & 1;
    }
}

bool WaveCapture::isTrigger(int previous, int current) const {
    const bool up = capture_.edge == WaveSettings::PlusUp || capture_.edge == WaveSettings::MinusUp;
    if (capture_.source == WaveSettings::Logic) {
        return up ? (previous == 0 && current == 1) : (previous == 1 && current == 0);
    }
    const int magnitude = capture_.source == WaveSettings::Velocity ? VelocityLevel : TorqueLevel;
    const bool plus =
        capture_.edge == WaveSettings::PlusUp || capture_.edge == WaveSettings::PlusDown;
    const int level = plus ? magnitude : -magnitude;
    return up ? (previous < level && current >= level) : (previous > level && current <= level);
}

const WaveSnapshot& WaveCapture::at(qint64 ms) const {
    // Before the first millisecond, or older than the history, the oldest kept value stands in.
    const qint64 oldest = std::max<qint64>(0, recorded_ - HistoryMs);
    const qint64 t = std::clamp(ms, oldest, recorded_ - 1);
    return history_[static_cast<std::size_t>(t % HistoryMs)];
}

WaveCapture::Event WaveCapture::record(const WaveSnapshot& snapshot) {
    history_[static_cast<std::size_t>(recorded_ % HistoryMs)] = snapshot;
    const qint64 now = recorded_++;
    const int period = capture_.samplePeriodMs();

    if (state_ == State::Armed) {
        if ((now - armedAt_) % period != 0)
            return Event::None;
        bool fire = capture_.source == WaveSettings::Manual;
        if (!fire) {
            const int current = signalOf(snapshot);
            fire = havePrevious_ && isTrigger(previous_, current);
            previous_ = current;
            havePrevious_ = true;
        }
        if (!fire)
            return Event::None;
        state_ = State::Triggered;
        triggerAt_ = now;
        return Event::Triggered;
    }
    if (state_ == State::Triggered) {
        const qint64 last = triggerAt_ + qint64{SampleCount - 1 - capture_.triggerIndex()} * period;
        if (now < last)
            return Event::None;
        buildRecord();
        state_ = State::Idle;
        return Event::Completed;
    }
    return Event::None;
}

void WaveCapture::buildRecord() {
    const int period = capture_.samplePeriodMs();
    const int trigger = capture_.triggerIndex();
    for (int k = 0; k < SampleCount; ++k) {
        const WaveSnapshot& s = at(triggerAt_ + qint64{k - trigger} * period);
        WaveSample& out = samples_[static_cast<std::size_t>(k)];
        out.velocity = s.velocity;
        out.torque = s.torque;
        out.logic = (s.logic >> std::clamp(capture_.logic, 0, 2)) & 1;
    }
}

}  // namespace velora::sim
