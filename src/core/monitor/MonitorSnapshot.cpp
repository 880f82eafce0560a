#include "core/monitor/MonitorSnapshot.h"

#include "core/link/ReplyFields.h"

namespace velora {

namespace {

// Reads the payload's fields by their 1-based positions; a short reply reads as zeros.
class FieldReader {
public:
    explicit FieldReader(const QString& reply) : fields_(reply, ReplyFields::Missing::ReadAsZero) {}

    [[nodiscard]] qint32 number(int position, int width) {
        return fields_.number(position - 1, width);
    }
    [[nodiscard]] qint32 unsigned32(int position, int width) {
        return fields_.unsigned32(position - 1, width);
    }
    [[nodiscard]] double hundredths(int position, int width) {
        return number(position, width) / 100.0;
    }
    [[nodiscard]] bool ok() const { return fields_.ok(); }

private:
    ReplyFields fields_;
};

}  // namespace

std::optional<MonitorSnapshot> MonitorSnapshot::decode(const QString& reply, bool withTorquePeak) {
    FieldReader r(reply);
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
    m.StatusWord = static_cast<quint32>(r.unsigned32(67, 4));
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
