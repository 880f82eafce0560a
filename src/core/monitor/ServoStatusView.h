#pragma once

#include <QString>
#include <QtGlobal>

#include <array>

namespace velora {

// Colours of the monitor's indicators as 0xRRGGBB (QColor accepts them as QRgb).
namespace monitorcolour {
inline constexpr quint32 Black = 0x000000;
inline constexpr quint32 White = 0xFFFFFF;
inline constexpr quint32 Green = 0x00FF00;
inline constexpr quint32 PaleGreen = 0xC0FFC0;
inline constexpr quint32 Red = 0xFF0000;
inline constexpr quint32 PaleRed = 0xFFC0C0;
// The real-time monitor switch: the chosen button, the other one.
inline constexpr quint32 SwitchChosen = 0xFF8080;
inline constexpr quint32 SwitchIdle = 0xC0C0C0;
}  // namespace monitorcolour

// Fill and background of a status bar lamp, or background and text of the SVON label.
struct IndicatorColours {
    quint32 fill = monitorcolour::Black;
    quint32 back = monitorcolour::Black;
};

// What one servo status word shows: the sixteen status captions and the status bar's RUN and
// ALARM lamps and SVON label.
struct ServoStatusView {
    static constexpr int BitCount = 16;
    // The bit that shows a resolution number (0 or 1) instead of ON/OFF.
    static constexpr int ResolutionBit = 10;

    quint32 word = 0;
    // ": ON"/": OFF" per bit, ": 1"/": 0" for the resolution bit.
    std::array<QString, BitCount> captions;
    bool servoOn = false;  // bit 0
    bool alarm = false;    // bit 1
    bool running = false;  // bit 4 (Run +) or bit 5 (RUN -)

    [[nodiscard]] static ServoStatusView fromWord(quint32 word);

    // SVON label: green with black text while the servo is on, black with white text otherwise
    // (fill is the text colour here).
    [[nodiscard]] IndicatorColours svonColours() const;
    [[nodiscard]] IndicatorColours alarmLampColours() const;
    [[nodiscard]] IndicatorColours runLampColours() const;
};

}  // namespace velora
