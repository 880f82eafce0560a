#pragma once

#include "core/shared/NextFieldIndex.h"
#include "core/shared/TableEditing.h"

#include <QString>

namespace velora {

struct ComTables;

// The editing rules of the command table window: the check of a cell when its box loses the
// focus and the focus movement over the 27 boxes (there is no box at cell 20). It changes the
// table and tells the window what to show; it never touches a widget.
class ComEdit {
public:
    explicit ComEdit(ComTables& tables) : tables_(tables) {}

    // The text box k shows for the stored value.
    [[nodiscard]] QString text(int k) const;

    // Box k lost the focus with `typed`: stores the checked value and marks the cell when it
    // changed (the box then turns the edited colour). Cell 20 and numbers outside 0..27 throw
    // std::out_of_range.
    [[nodiscard]] FieldCheck leave(int k, const QString& typed);

    // The box that takes the focus after `key` in box k: the cells in order, 19 next to 21,
    // wrapping at both ends.
    [[nodiscard]] static int keyDown(int k, FieldKey key);

    // Row of the window and colour parity of cell k: the entry's number.
    [[nodiscard]] static int row(int k);

private:
    ComTables& tables_;
};

}  // namespace velora
