#pragma once

#include <QLocale>
#include <QString>
#include <QtGlobal>

#include <optional>

namespace velora {

// One monitor reply ("ma") decoded: the thirteen values of the numerical monitor in their display
// units, the I/O and servo status words and the alarm code.
struct MonitorSnapshot {
    // The numerical monitor's values, in the order of its value labels.
    static constexpr int ValueCount = 13;
    static constexpr int TorquePeakIndex = 12;
    // Payload characters (after axis and code) of a drive from version 1.10 on, which carries
    // the torque peak at its end.
    static constexpr int PayloadLength = 95;

    qint32 NowPosition = 0;        // [Pls]
    qint32 PositionCommand = 0;    // [Pls]
    qint32 PositionDeviation = 0;  // [Pls]
    qint32 RestComPulse = 0;       // [Pls]
    qint32 NowVelocity = 0;        // [rpm]
    qint32 CommandVelocity = 0;    // [rpm]
    double TorqueCommand = 0.0;    // [%]
    qint32 StartPoint = 0;
    qint32 NowPoint = 0;
    qint32 NextPoint = 0;
    double TorqueLimit = 0.0;  // [%]
    qint32 DecZPulse = 0;      // [Pls]
    quint16 IoWord = 0;        // outputs in bits 0-3, inputs in bits 8-12
    quint32 StatusWord = 0;    // 0..65535
    qint32 AlarmCode = 0;      // 0 when no alarm
    // [%]; only drives from version 1.10 on report it.
    std::optional<double> TorquePeak;

    // Decodes a whole reply text (axis character, "ma", payload). Missing characters at the end
    // read as zeros; a field holding anything but hex digits makes the reply unusable (nullopt).
    // The torque peak is read only when withTorquePeak.
    [[nodiscard]] static std::optional<MonitorSnapshot> decode(const QString& reply,
                                                               bool withTorquePeak);

    // The text of value label index (0..12): integers as plain decimal, percentages as the
    // shortest decimal with the locale's decimal separator. Empty for a torque peak not reported.
    [[nodiscard]] QString valueText(int index, const QLocale& locale = QLocale()) const;
    // "[Pls]", "[rpm]", "[%]" or empty, for value label index.
    [[nodiscard]] static QString unitLabel(int index);
    // A percentage as its shortest decimal text: 12.34, 12.5, 12, -0.05.
    [[nodiscard]] static QString percentText(double value, const QLocale& locale = QLocale());
};

}  // namespace velora
