#pragma once

#include "sim/Drive.h"

#include <QString>
#include <QtGlobal>

namespace velora::sim::test {

// Characters pos..pos+width-1 of a reply's payload, pos counted from 1 as the PC does.
inline QString payloadField(const QString& reply, int pos, int width) {
    return reply.mid(3 + pos - 1, width);
}

// A fixed-width hex field read back as a two's complement number of its width.
inline qint32 signedField(const QString& hex) {
    bool ok = false;
    const qint64 raw = hex.toLongLong(&ok, 16);
    if (!ok)
        return 0x7FFFFFFF;
    const int bits = static_cast<int>(hex.size()) * 4;
    if (bits >= 32)
        return static_cast<qint32>(static_cast<quint32>(raw));
    const qint64 sign = qint64{1} << (bits - 1);
    return static_cast<qint32>(raw & sign ? raw - (sign << 1) : raw);
}

// Sends text to the drive; the reply text, or "<none>" for silence.
inline QString send(Drive& drive, const QString& text) {
    const std::optional<QString> reply = drive.execute(text);
    return reply ? *reply : QStringLiteral("<none>");
}

}  // namespace velora::sim::test
