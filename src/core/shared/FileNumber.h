#pragma once

#include "core/shared/NumericText.h"

#include <QByteArray>
#include <QLocale>
#include <QString>
#include <QtGlobal>

#include <optional>

namespace velora {

// A value line of a table file converted to a field of the given type range (0..255 for an
// unsigned byte, the 16-bit or 32-bit signed range): rounded halves to even. Nothing when the
// line is not a number or its value does not fit the type; a value that fits the type but not
// the field's own range is for the editor's check to clamp.
[[nodiscard]] inline std::optional<qint32> fileNumber(const QByteArray& line, qint64 lowest,
                                                      qint64 highest) {
    const QString text = QString::fromLatin1(line);
    const std::optional<qint32> number = toWholeNumber(text);
    if (!number)
        return std::nullopt;
    // toWholeNumber saturates at the 32-bit ends, so the size is judged on the text itself.
    bool ok = false;
    const double size = QLocale::c().toDouble(text.trimmed(), &ok);
    if (!ok || size < static_cast<double>(lowest) - 0.5 ||
        size > static_cast<double>(highest) + 0.5 || *number < lowest || *number > highest) {
        return std::nullopt;
    }
    return number;
}

}  // namespace velora
