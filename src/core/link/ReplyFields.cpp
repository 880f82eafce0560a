#include "core/link/ReplyFields.h"

#include "core/link/WireFormat.h"

namespace velora {

namespace {
// Characters before the payload: axis character and the two-letter code.
constexpr int HeaderLength = 3;
}  // namespace

ReplyFields::ReplyFields(const QString& reply, Missing missing)
    : payload_(reply.mid(HeaderLength)), missing_(missing) {
}

bool ReplyFields::isHexText(const QString& text) {
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (!((u >= '0' && u <= '9') || (u >= 'A' && u <= 'F') || (u >= 'a' && u <= 'f')))
            return false;
    }
    return true;
}

QString ReplyFields::field(int offset, int width) {
    const QString text = payload_.mid(offset, width);
    if (!isHexText(text) || (missing_ == Missing::Malformed && text.size() < width))
        ok_ = false;
    return text;
}

qint32 ReplyFields::number(int offset, int width) {
    return HexToLong(field(offset, width));
}

qint32 ReplyFields::unsigned32(int offset, int width) {
    return HexToLong32(field(offset, width));
}

int ReplyFields::digit(int offset) {
    if (offset >= payload_.size()) {
        if (missing_ == Missing::Malformed)
            ok_ = false;
        return 0;
    }
    const QChar c = payload_.at(offset);
    if (c.unicode() < '0' || c.unicode() > '9') {
        ok_ = false;
        return 0;
    }
    return c.unicode() - '0';
}

}  // namespace velora
