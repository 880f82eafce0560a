#include "core/link/WireFormat.h"

namespace velora {

namespace wire {

QChar axisCharacter(int axis) {
    static constexpr char digits[] = "0123456789ABCDEF";
    return QLatin1Char(digits[axis & 0xF]);
}

QByteArray buildFrame(const QString& text) {
    QByteArray frame;
    frame.reserve(text.size() + 2);
    frame.append(FrameStart);
    frame.append(text.toLatin1());
    frame.append(FrameEnd);
    return frame;
}

TextCheck checkCommandText(const QString& text) {
    if (text.size() > MaxCommandLength)
        return TextCheck::TooLong;
    for (const QChar c : text) {
        // The frame has no escapes: only printable ASCII can travel inside it.
        if (c.unicode() < 0x20 || c.unicode() > 0x7E)
            return TextCheck::BadCharacter;
    }
    return TextCheck::Ok;
}

QString codeOf(const QString& text) {
    return text.mid(1, 2);
}

bool isPollingCode(const QString& code) {
    return code > QLatin1String("a") && code < QLatin1String("z");
}

bool isBroadcast(const QString& text, int axisNumber) {
    return axisNumber == AllAxes || text.startsWith(QLatin1Char('f'), Qt::CaseInsensitive);
}

bool answers(const QString& reply, const QString& command) {
    if (command.isEmpty() || reply.size() < 3 ||
        reply.front().toUpper() != command.front().toUpper())
        return false;
    const QString code = codeOf(reply);
    return code == codeOf(command) || code == QLatin1String("ER");
}

}  // namespace wire

namespace {

int hexDigit(QChar c) {
    const ushort u = c.unicode();
    if (u >= '0' && u <= '9')
        return u - '0';
    if (u >= 'A' && u <= 'F')
        return u - 'A' + 10;
    if (u >= 'a' && u <= 'f')
        return u - 'a' + 10;
    return -1;
}

// The value of the leading hex digits of text (at most eight are ever passed in).
quint32 leadingHexValue(const QString& text) {
    quint32 value = 0;
    for (const QChar c : text) {
        const int d = hexDigit(c);
        if (d < 0)
            break;
        value = (value << 4) | static_cast<quint32>(d);
    }
    return value;
}

// Eight digits whose upper four are zero stand for an unsigned 16-bit value.
qint32 fromEightDigits(const QString& padded) {
    if (padded.startsWith(QLatin1String("0000"))) {
        return static_cast<qint32>(leadingHexValue(padded.right(4)) & 0xFFFF);
    }
    return static_cast<qint32>(leadingHexValue(padded));
}

}  // namespace

qint32 HexToLong(const QString& text) {
    const auto length = text.size();
    if (length == 0 || length >= 9 || hexDigit(text.front()) < 0)
        return 0;
    if (length >= 5)
        return fromEightDigits(text.rightJustified(8, QLatin1Char('0')));
    return static_cast<qint16>(static_cast<quint16>(leadingHexValue(text)));
}

qint32 HexToLong32(const QString& text) {
    return fromEightDigits(text.rightJustified(8, QLatin1Char('0')).right(8));
}

QString hex16(qint32 value) {
    if (value < 0)
        return QString::number(static_cast<quint16>(value), 16).toUpper();
    return QString::number(value, 16).toUpper();
}

QString hex32(qint32 value) {
    return QString::number(static_cast<quint32>(value), 16).toUpper();
}

}  // namespace velora
