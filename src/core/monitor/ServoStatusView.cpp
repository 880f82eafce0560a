#include "core/monitor/ServoStatusView.h"

#include "core/shared/ServoStatus.h"

namespace velora {

ServoStatusView ServoStatusView::fromWord(quint32 word) {
    ServoStatusView view;
    view.word = word;
    const ServoStatus status(word);
    for (int bit = 0; bit < BitCount; ++bit) {
        const bool set = status.bit(bit);
        if (bit == ResolutionBit) {
            view.captions[bit] = set ? QStringLiteral(": 1") : QStringLiteral(": 0");
        } else {
            view.captions[bit] = set ? QStringLiteral(": ON") : QStringLiteral(": OFF");
        }
    }
    // The lamps follow bits 1 (alarm) and 4/5 (running either way); SVON follows bit 0.
    view.servoOn = status.servoOn();
    view.alarm = status.alarm();
    view.running = status.bit(4) || status.bit(5);
    return view;
}

IndicatorColours ServoStatusView::svonColours() const {
    if (servoOn)
        return {monitorcolour::Black, monitorcolour::Green};
    return {monitorcolour::White, monitorcolour::Black};
}

IndicatorColours ServoStatusView::alarmLampColours() const {
    if (alarm)
        return {monitorcolour::Red, monitorcolour::PaleRed};
    return {};
}

IndicatorColours ServoStatusView::runLampColours() const {
    if (running)
        return {monitorcolour::Green, monitorcolour::PaleGreen};
    return {};
}

}  // namespace velora
