#include "core/params/ParamEditSystem.h"

#include "core/shared/NumericText.h"
#include "core/shared/ParamTables.h"

#include <stdexcept>

namespace velora {

void SprmEdit::checkBox(int k) {
    if (k < 0 || k >= BoxCount)
        throw std::out_of_range("system parameter box");
}

std::size_t SprmEdit::index(int k) {
    checkBox(k);
    return static_cast<std::size_t>(parameterOf(k));
}

QString SprmEdit::boxText(int k) const {
    return QString::number(tables_.ParamValue[index(k)]);
}

KeyOutcome SprmEdit::keyDown(int k, FieldKey key) {
    checkBox(k);
    KeyOutcome out;
    out.focus = NextFieldIndex(k, key, BoxCount);
    out.tab = out.focus / BoxesPerTab;
    return out;
}

EditOutcome SprmEdit::leave(int k, const QString& text) {
    const std::size_t p = index(k);
    EditOutcome out;
    out.refreshed = {k};
    // The range is checked on the rounded value, the one that would be stored.
    const std::optional<qint32> number = toWholeNumber(text);
    if (!number || !tables_.inRange(static_cast<int>(p), *number))
        return out;
    if (*number != tables_.ParamValue[p]) {
        tables_.ParamValue[p] = *number;
        tables_.ParamChanged[p] = true;
        out.changed = true;
    }
    return out;
}

}  // namespace velora
