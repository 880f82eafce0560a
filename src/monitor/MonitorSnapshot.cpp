#include "monitor/MonitorSnapshot.h"

#include "link/WireFormat.h"

namespace velora {

namespace {

// Characters before the payload: axis character and the two-letter code.
constexpr int kHeaderLength = 3;

// Reads the fixed-width fields of a payload by their 1-based positions.
class FieldReader {
public:
    explicit FieldReader(const QString& payload) : payload_(payload) {}

    // The field's characters; a short payload gives a shorter or empty field.
    [[nodiscard]] QString field(int position, int width) {
        const QString text = payload_.mid(position - 1, width);
        for (const QChar c : text) {
            if (!isHexDigit(c))
                ok_ = false;
        }
        return text;
    }
    [[nodiscard]] qint32 number(int position, int width) {
        return HexToLong(field(position, width));
    }
    [[nodiscard]] double hundredths(int position, int width) {
        return number(position, width) / 100.0;
    }
    [[nodiscard]] bool ok() const { return ok_; }

private:
    static bool isHexDigit(QChar c) {
        const char16_t u = c.unicode();
        return (u >= '0' && u <= '9') || (u >= 'A' && u <= 'F') || (u >= 'a' && u <= 'f');
    }

    QString payload_;
    bool ok_ = true;
};

}  // namespace

std::optional<MonitorSnapshot> MonitorSnapshot::decode(const QString& reply, bool withTorquePeak) {
    FieldReader r(reply.mid(kHeaderLength));
    MonitorSnapshot m;
    m.NowPosition = r.number(1, 8);
    m.PositionCommand = r.number(9, 8);
    m.PositionDeviation = r.number(17, 8);
    m.RestComPulse = r.number(25, 8);
    m.NowVelocity = r.number(33, 4);
    m.CommandVelocity = r.number(37, 4);
    m.TorqueCommand = r.hundredths(41, 4);
    m.StartPoint = r.number(45, 2);
    m.NowPoint = r.number(47, 2);
    m.NextPoint = r.number(49, 2);
    m.TorqueLimit = r.hundredths(51, 4);
    m.DecZPulse = r.number(55, 8);
    m.IoWord = static_cast<quint16>(r.number(63, 4));
    m.StatusWord = static_cast<quint32>(HexToLong32(r.field(67, 4)));
    m.AlarmCode = r.number(71, 2);
    // Positions 73-91 carry nothing this program shows.
    if (withTorquePeak)
        m.TorquePeak = r.hundredths(92, 4);
    if (!r.ok())
        return std::nullopt;
    return m;
}

QString MonitorSnapshot::valueText(int index, const QLocale& locale) const {
    switch (index) {
        case 0:
            return QString::number(NowPosition);
        case 1:
            return QString::number(PositionCommand);
        case 2:
            return QString::number(PositionDeviation);
        case 3:
            return QString::number(RestComPulse);
        case 4:
            return QString::number(NowVelocity);
        case 5:
            return QString::number(CommandVelocity);
        case 6:
            return percentText(TorqueCommand, locale);
        case 7:
            return QString::number(StartPoint);
        case 8:
            return QString::number(NowPoint);
        case 9:
            return QString::number(NextPoint);
        case 10:
            return percentText(TorqueLimit, locale);
        case 11:
            return QString::number(DecZPulse);
        case TorquePeakIndex:
            return TorquePeak ? percentText(*TorquePeak, locale) : QString();
        default:
            return {};
    }
}

QString MonitorSnapshot::unitLabel(int index) {
    switch (index) {
        case 0:
        case 1:
        case 2:
        case 3:
        case 11:
            return QStringLiteral("[Pls]");
        case 4:
        case 5:
            return QStringLiteral("[rpm]");
        case 6:
        case 10:
        case TorquePeakIndex:
            return QStringLiteral("[%]");
        default:
            return {};
    }
}

QString MonitorSnapshot::percentText(double value, const QLocale& locale) {
    // The shortest text that reads back as the same number; only the separator is localised so
    // that a minus sign stays a plain '-' like in the integer values.
    QString text = QString::number(value, 'f', QLocale::FloatingPointShortest);
    text.replace(QLatin1Char('.'), locale.decimalPoint());
    return text;
}

}  // namespace velora
