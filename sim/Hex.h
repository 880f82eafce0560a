#pragma once

#include <QString>
#include <QStringView>
#include <QtGlobal>

#include <optional>

namespace velora::sim {

// Fixed-width upper-case hex of the low width*4 bits: negative values come out as two's
// complement of that width (hexField(-100, 8) is FFFFFF9C, hexField(-1, 4) is FFFF).
[[nodiscard]] QString hexField(qint64 value, int width);

// Upper-case hex without leading zeros; a negative value as 8-digit two's complement.
[[nodiscard]] QString hexNumber(qint32 value);

// Why a number in a command could not be taken.
enum class NumberError { Malformed, OutOfRange };

// A number from a command: 1 to 8 hex digits (either case). Up to fieldBits/4 digits are read
// as a two's complement number of fieldBits bits, longer texts as 32-bit two's complement, so
// FFFF is -1 in a 16-bit field and 65535 in a 32-bit one.
struct ParsedNumber {
    std::optional<qint32> value;
    NumberError error = NumberError::Malformed;
};
[[nodiscard]] ParsedNumber parseNumber(QStringView text, int fieldBits);

}  // namespace velora::sim
