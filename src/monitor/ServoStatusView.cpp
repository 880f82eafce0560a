#include "monitor/ServoStatusView.h"

namespace velora {

ServoStatusView ServoStatusView::fromWord(quint32 word) {
    ServoStatusView view;
    view.word = word;
    for (int bit = 0; bit < BitCount; ++bit) {
        const bool set = ((word >> bit) & 1U) != 0;
        if (bit == ResolutionBit) {
            view.captions[bit] = set ? QStringLiteral(": 1") : QStringLiteral(": 0");
        } else {
            view.captions[bit] = set ? QStringLiteral(": ON") : QStringLiteral(": OFF");
        }
    }
    // The lamps follow the captions of bits 1, 4 and 5; the servo-on label follows bit 0.
    const QString on = QStringLiteral(": ON");
    view.servoOn = view.captions[0] == on;
    view.alarm = view.captions[1] == on;
    view.running = view.captions[4] == on || view.captions[5] == on;
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
