#include "sim/Hex.h"

namespace velora::sim {

namespace {

int hexDigit(QChar c) {
    const char16_t u = c.unicode();
    if (u >= '0' && u <= '9')
        return u - '0';
    if (u >= 'A' && u <= 'F')
        return u - 'A' + 10;
    if (u >= 'a' && u <= 'f')
        return u - 'a' + 10;
    return -1;
}

}  // namespace

QString hexField(qint64 value, int width) {
    const quint64 mask = width >= 16 ? ~quint64{0} : (quint64{1} << (4 * width)) - 1;
    return QString::number(static_cast<quint64>(value) & mask, 16)
        .toUpper()
        .rightJustified(width, QLatin1Char('0'));
}

QString hexNumber(qint32 value) {
    return QString::number(static_cast<quint32>(value), 16).toUpper();
}

ParsedNumber parseNumber(QStringView text, int fieldBits) {
    ParsedNumber result;
    if (text.isEmpty())
        return result;
    quint64 raw = 0;
    for (const QChar c : text) {
        const int d = hexDigit(c);
        if (d < 0)
            return result;
        raw = (raw << 4) | static_cast<quint64>(d);
        if (raw > 0xFFFFFFFFu) {
            result.error = NumberError::OutOfRange;
            return result;
        }
    }
    const bool narrow = text.size() * 4 <= fieldBits && fieldBits < 32;
    if (narrow) {
        const quint64 signBit = quint64{1} << (fieldBits - 1);
        const qint64 v = static_cast<qint64>(raw);
        result.value = static_cast<qint32>((raw & signBit) ? v - (qint64{1} << fieldBits) : v);
    } else {
        result.value = static_cast<qint32>(static_cast<quint32>(raw));
    }
    return result;
}

}  // namespace velora::sim
