#include "core/pointtable/PointEdit.h"

#include "core/shared/PointTables.h"

#include <stdexcept>

namespace velora {

namespace {

PointEntry& entryOf(PointTables& tables, int point) {
    if (point < 0 || point >= PointTables::Count)
        throw std::out_of_range("point number");
    return tables.PointTable[static_cast<std::size_t>(point)];
}

}  // namespace

qint32 PointEdit::minimum(PointField field) {
    switch (field) {
        case PointField::Position:
            return -99999999;
        default:
            return 0;
    }
}

qint32 PointEdit::maximum(PointField field) {
    switch (field) {
        case PointField::PosTor:
            return 7;
        case PointField::AbsInc:
            return 1;
        case PointField::Position:
            return 99999999;
        case PointField::Velocity:
        case PointField::AccConst:
            return 9;
        case PointField::WaitTime:
            return 65535;
        case PointField::NextStart:
            return 3;
    }
    return 0;
}

qint32 PointEdit::value(int point, PointField field) const {
    const PointEntry& e = entryOf(tables_, point);
    switch (field) {
        case PointField::PosTor:
            return e.PosTor;
        case PointField::AbsInc:
            return e.AbsInc;
        case PointField::Position:
            return e.Position;
        case PointField::Velocity:
            return e.Velocity;
        case PointField::AccConst:
            return e.AccConst;
        case PointField::WaitTime:
            return e.WaitTime;
        case PointField::NextStart:
            return e.NextStart;
    }
    return 0;
}

void PointEdit::setValue(int point, PointField field, qint32 value) {
    PointEntry& e = entryOf(tables_, point);
    const auto byte = static_cast<quint8>(value);
    switch (field) {
        case PointField::PosTor:
            e.PosTor = byte;
            break;
        case PointField::AbsInc:
            e.AbsInc = byte;
            break;
        case PointField::Position:
            e.Position = value;
            break;
        case PointField::Velocity:
            e.Velocity = byte;
            break;
        case PointField::AccConst:
            e.AccConst = byte;
            break;
        case PointField::WaitTime:
            e.WaitTime = value;
            break;
        case PointField::NextStart:
            e.NextStart = byte;
            break;
    }
}

FieldCheck PointEdit::leave(int point, PointField field, const QString& typed) {
    const FieldCheck check =
        checkTableField(typed, value(point, field), minimum(field), maximum(field));
    setValue(point, field, check.value);
    if (check.changed)
        tables_.PointChanged[static_cast<std::size_t>(point)] = true;
    return check;
}

PointEdit::Move PointEdit::keyDown(int point, FieldKey key) {
    const int target = NextFieldIndex(point, key, PointTables::Count);
    return {target, target / PointsPerTab};
}

}  // namespace velora
