#pragma once

#include "core/shared/ComTables.h"
#include "core/shared/DriveId.h"
#include "core/shared/ParamTables.h"
#include "core/shared/PointTables.h"

#include <QObject>

#include <array>

namespace velora {

class ComTransfer;
class ParamTransfer;
class PointTransfer;
struct Global;

// What each table holds as far as its drive is concerned: the values last read from it or
// written to it (or those at start-up), and the drive they came from. Edits dropped unwritten
// are taken back to these, so that a table never shows values no drive holds under a drive's
// name.
class DriveCopies : public QObject {
    Q_OBJECT
public:
    DriveCopies(Global& global, ParamTransfer& params, PointTransfer& points, ComTransfer& commands,
                QObject* parent = nullptr);

    // The tables as they are now count as their drives' (at start-up, once they are filled).
    void takeAll();
    // Every table back to its copy, every mark cleared.
    void restore();

private:
    Global& global_;
    std::array<qint32, ParamTables::Count> params_{};
    DriveId paramsOrigin_;
    std::array<PointEntry, PointTables::Count> points_{};
    DriveId pointsOrigin_;
    ComTables commands_;
};

}  // namespace velora
