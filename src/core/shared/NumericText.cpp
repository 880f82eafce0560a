#include "core/shared/NumericText.h"

#include <algorithm>
#include <limits>
#include <string>

namespace velora {

namespace {

// A numeric text taken apart: value = ±0.digits x 10^(pointPos + exponent).
struct Decimal {
    bool negative = false;
    std::string digits;  // every digit of the mantissa, the point left out
    long pointPos = 0;   // how many of them stand before the point
    long exponent = 0;
};

// Any exponent this large already puts a value far beyond the 32-bit range or rounds it to 0;
// capping it keeps the arithmetic below from overflowing.
constexpr long ExponentCap = 1000;

bool isAsciiDigit(QChar c) {
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

bool takeSign(const QString& s, int& i) {
    if (i < s.size() && (s[i] == QLatin1Char('+') || s[i] == QLatin1Char('-')))
        return s[i++] == QLatin1Char('-');
    return false;
}

std::optional<Decimal> parse(const QString& text) {
    const QString s = text.trimmed();
    Decimal d;
    int i = 0;
    d.negative = takeSign(s, i);
    bool point = false;
    for (; i < s.size(); ++i) {
        if (isAsciiDigit(s[i])) {
            d.digits.push_back(static_cast<char>(s[i].unicode()));
            if (!point)
                ++d.pointPos;
        } else if (s[i] == QLatin1Char('.') && !point) {
            point = true;
        } else {
            break;
        }
    }
    if (d.digits.empty())
        return std::nullopt;
    if (i < s.size() && (s[i] == QLatin1Char('e') || s[i] == QLatin1Char('E'))) {
        ++i;
        const bool negativeExponent = takeSign(s, i);
        const int start = i;
        for (; i < s.size() && isAsciiDigit(s[i]); ++i)
            d.exponent = std::min(d.exponent * 10 + s[i].digitValue(), ExponentCap);
        if (i == start)
            return std::nullopt;
        if (negativeExponent)
            d.exponent = -d.exponent;
    }
    if (i != s.size())
        return std::nullopt;
    return d;
}

}  // namespace

bool isNumeric(const QString& text) {
    return parse(text).has_value();
}

std::optional<qint32> toWholeNumber(const QString& text) {
    const std::optional<Decimal> d = parse(text);
    if (!d)
        return std::nullopt;
    const std::size_t first = d->digits.find_first_not_of('0');
    if (first == std::string::npos)
        return 0;
    const std::string digits = d->digits.substr(first);
    const long intDigits = d->pointPos - static_cast<long>(first) + d->exponent;
    constexpr qint64 Lowest = std::numeric_limits<qint32>::min();
    constexpr qint64 Highest = std::numeric_limits<qint32>::max();
    // Eleven or more digits before the point are beyond the range whatever they are.
    if (intDigits > 10)
        return static_cast<qint32>(d->negative ? Lowest : Highest);

    qint64 magnitude = 0;
    for (long k = 0; k < intDigits; ++k) {
        const auto at = static_cast<std::size_t>(k);
        magnitude = magnitude * 10 + (at < digits.size() ? digits[at] - '0' : 0);
    }
    // Halves to even, decided on the digits themselves so that 2.5000001 is not taken for 2.5.
    if (intDigits >= 0 && static_cast<std::size_t>(intDigits) < digits.size()) {
        const auto fraction = static_cast<std::size_t>(intDigits);
        const char head = digits[fraction];
        const bool moreThanHalf = digits.find_first_not_of('0', fraction + 1) != std::string::npos;
        if (head > '5' || (head == '5' && (moreThanHalf || magnitude % 2 == 1)))
            ++magnitude;
    }
    const qint64 value = d->negative ? -magnitude : magnitude;
    return static_cast<qint32>(std::clamp(value, Lowest, Highest));
}

}  // namespace velora
