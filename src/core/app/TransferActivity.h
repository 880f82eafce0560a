#pragma once

#include "core/link/DriveRules.h"

#include <QString>

namespace velora {

class LinkEngine;
class ParamTransfer;
struct Global;

// What the busy dialog says is going on: which table goes which way, to or from which drive,
// and how far ("Writing point 12 to axis 0 (/dev/ttyS0) (13 of 64)"). Read from the shared
// state whenever asked, so it follows the chain without being told of each step.
class TransferActivity {
public:
    TransferActivity(const Global& global, const LinkEngine& engine, const ParamTransfer& params)
        : global_(global), engine_(engine), params_(params) {}

    // A transfer is shown: the entries marked now are the ones its count runs over.
    void begin();
    // One line, in the link's language; empty when no transfer runs.
    [[nodiscard]] QString text() const;

private:
    // "(13 of 64)": the entry in flight among those marked when the transfer was shown.
    [[nodiscard]] QString position(int total, int remaining) const;
    // " 40 %" of a long read reply that `expected` characters make whole.
    [[nodiscard]] QString received(int expected) const;

    const Global& global_;
    const LinkEngine& engine_;
    const ParamTransfer& params_;
    driverules::Unwritten total_;
};

}  // namespace velora
