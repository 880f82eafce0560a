#pragma once

#include <QString>
#include <QtGlobal>

namespace velora {

// Reads the fixed-width number fields of one reply's payload (what follows the axis character
// and the code). A field holding a character that is not a hex digit cannot be converted, and
// spoils the whole reply: its handler then stores nothing of it. Where the layout requires every
// field, a field cut off by a short reply spoils it too; otherwise the missing characters read
// as zeros.
class ReplyFields {
public:
    enum class Missing { ReadAsZero, Malformed };

    ReplyFields(const QString& reply, Missing missing);

    // The field's characters at a 0-based payload offset; checked, possibly short or empty.
    [[nodiscard]] QString field(int offset, int width);
    // HexToLong of the field (1-4 digits signed 16-bit, 5-8 digits 32-bit).
    [[nodiscard]] qint32 number(int offset, int width);
    // HexToLong32 of the field (up to four digits unsigned).
    [[nodiscard]] qint32 unsigned32(int offset, int width);
    // One decimal digit (the wave record's logic level, the alarm history's entries).
    [[nodiscard]] int digit(int offset);

    // Every field read so far could be converted.
    [[nodiscard]] bool ok() const { return ok_; }

    [[nodiscard]] static bool isHexText(const QString& text);

private:
    QString payload_;
    Missing missing_;
    bool ok_ = true;
};

}  // namespace velora
