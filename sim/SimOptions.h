#pragma once

#include "sim/FaultPlan.h"

#include <QList>
#include <QString>

namespace velora::sim {

// How a simulated line is set up.
struct SimOptions {
    QString devicePath;  // empty: create a pseudo-terminal pair
    QList<int> axes{0};  // one drive per axis, 0..14
    bool fast = false;   // no pacing, no reply wait
    int version = 110;   // parameter 119, software version x 100
    FaultPlan faults;
};

}  // namespace velora::sim
