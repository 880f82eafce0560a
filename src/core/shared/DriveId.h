#pragma once

#include <QString>

namespace velora {

// Which drive a table came from: its axis on the line and the device of the line. A table
// read from one drive must not go to another unasked.
struct DriveId {
    int axis = -1;  // -1: from no drive (the values at start-up, or a file loaded offline)
    QString device;

    [[nodiscard]] bool known() const { return axis >= 0; }
    friend bool operator==(const DriveId& a, const DriveId& b) {
        return a.axis == b.axis && a.device == b.device;
    }
    friend bool operator!=(const DriveId& a, const DriveId& b) { return !(a == b); }
};

}  // namespace velora
