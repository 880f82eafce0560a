#include "core/comtable/ComEdit.h"

#include "core/shared/ComTables.h"

#include <stdexcept>

namespace velora {

namespace {

void requireCell(int k) {
    if (ComTables::column(k) == ComTables::Column::None)
        throw std::out_of_range("command table cell");
}

}  // namespace

QString ComEdit::text(int k) const {
    requireCell(k);
    return QString::number(tables_.value(k));
}

FieldCheck ComEdit::leave(int k, const QString& typed) {
    requireCell(k);
    const ComTables::Column column = ComTables::column(k);
    const FieldCheck check = checkTableField(typed, tables_.value(k), ComTables::minimum(column),
                                             ComTables::maximum(column));
    tables_.setValue(k, check.value);
    if (check.changed)
        tables_.ComChanged[static_cast<std::size_t>(k)] = true;
    return check;
}

int ComEdit::keyDown(int k, FieldKey key) {
    const int target = NextFieldIndex(k, key, ComTables::CellCount);
    if (target != ComTables::NoCell)
        return target;
    return key == FieldKey::Up ? ComTables::NoCell - 1 : ComTables::NoCell + 1;
}

int ComEdit::row(int k) {
    return ComTables::number(k);
}

}  // namespace velora
