#pragma once

namespace velora::sim {

// How the PC has set up the line, as far as a drive can tell: a drive decodes a frame only at
// its own rate.
struct LineSettings {
    int baud = 0;  // 0: not known, every drive hears

    [[nodiscard]] bool heardAt(int driveBaud) const { return baud == 0 || baud == driveBaud; }
};

}  // namespace velora::sim
