#include "core/app/DriveCopies.h"

#include "core/comtable/ComTransfer.h"
#include "core/params/ParamTransfer.h"
#include "core/pointtable/PointTransfer.h"
#include "core/shared/Global.h"

#include <algorithm>

namespace velora {

DriveCopies::DriveCopies(Global& global, ParamTransfer& params, PointTransfer& points,
                         ComTransfer& commands, QObject* parent)
    : QObject(parent), global_(global) {
    ParamTables& p = global_.Params;
    const auto takeParam = [this, &p](int n) {
        params_.at(static_cast<std::size_t>(n)) = p.ParamValue.at(static_cast<std::size_t>(n));
    };
    connect(&params, &ParamTransfer::valuesRefreshed, this, [this, &p] {
        std::copy_n(p.ParamValue.cbegin(), ParamTables::Count, params_.begin());
        paramsOrigin_ = p.Origin;
    });
    connect(&params, &ParamTransfer::valueRefreshed, this, takeParam);
    connect(&params, &ParamTransfer::parameterWritten, this, takeParam);

    PointTables& t = global_.Points;
    const auto takePoint = [this, &t](int i) {
        points_.at(static_cast<std::size_t>(i)) = t.PointTable.at(static_cast<std::size_t>(i));
    };
    connect(&points, &PointTransfer::tableRefreshed, this, [this, &t] {
        points_ = t.PointTable;
        pointsOrigin_ = t.Origin;
    });
    connect(&points, &PointTransfer::pointRefreshed, this, takePoint);
    connect(&points, &PointTransfer::pointWritten, this, takePoint);

    ComTables& c = global_.Com;
    const auto takeCell = [this, &c](int k) { commands_.setValue(k, c.value(k)); };
    connect(&commands, &ComTransfer::tableRefreshed, this, [this, &c, takeCell] {
        for (int k = 0; k < ComTables::CellCount; ++k)
            takeCell(k);
        commands_.Origin = c.Origin;
    });
    connect(&commands, &ComTransfer::cellRefreshed, this, takeCell);
    connect(&commands, &ComTransfer::cellWritten, this, takeCell);
}

void DriveCopies::takeAll() {
    std::copy_n(global_.Params.ParamValue.cbegin(), ParamTables::Count, params_.begin());
    paramsOrigin_ = global_.Params.Origin;
    points_ = global_.Points.PointTable;
    pointsOrigin_ = global_.Points.Origin;
    commands_ = global_.Com;
}

void DriveCopies::restore() {
    ParamTables& p = global_.Params;
    std::copy(params_.cbegin(), params_.cend(), p.ParamValue.begin());
    p.Origin = paramsOrigin_;
    p.ParamChanged.fill(false);
    p.Prm45Undo = false;
    PointTables& t = global_.Points;
    t.PointTable = points_;
    t.Origin = pointsOrigin_;
    t.PointChanged.fill(false);
    ComTables& c = global_.Com;
    for (int k = 0; k < ComTables::CellCount; ++k)
        c.setValue(k, commands_.value(k));
    c.Origin = commands_.Origin;
    c.ComChanged.fill(false);
}

}  // namespace velora
