#pragma once

#include "core/shared/NextFieldIndex.h"
#include "core/shared/TableEditing.h"

#include <QString>

namespace velora {

struct PointTables;

// The seven columns of the point table, in the order of the window and the file.
enum class PointField { PosTor, AbsInc, Position, Velocity, AccConst, WaitTime, NextStart };

// The editing rules of the point table window: the range of each column, the check of a box
// when it loses the focus and the focus movement. It changes the table and tells the window
// what to show; it never touches a widget. Point numbers outside 0..63 throw std::out_of_range.
class PointEdit {
public:
    static constexpr int FieldCount = 7;
    static constexpr int PointsPerTab = 8;

    explicit PointEdit(PointTables& tables) : tables_(tables) {}

    [[nodiscard]] static qint32 minimum(PointField field);
    [[nodiscard]] static qint32 maximum(PointField field);

    [[nodiscard]] qint32 value(int point, PointField field) const;
    // Stores as the field's type (8-bit fields keep the low byte).
    void setValue(int point, PointField field, qint32 value);
    // The text box shows for the stored value.
    [[nodiscard]] QString text(int point, PointField field) const {
        return QString::number(value(point, field));
    }

    // The box of `field` in row `point` lost the focus with `typed`: stores the checked value
    // and marks the point when it changed (the row then turns the edited colour).
    [[nodiscard]] FieldCheck leave(int point, PointField field, const QString& typed);

    // The point whose box of the same column takes the focus after `key`, and its tab.
    struct Move {
        int point = 0;
        int tab = 0;
    };
    [[nodiscard]] static Move keyDown(int point, FieldKey key);

private:
    PointTables& tables_;
};

}  // namespace velora
