#pragma once

#include "core/shared/DriveId.h"

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <optional>

namespace velora {

// One positioning point of the drive's table, as the editor and the files show it. ModeWord is
// the packed form the wire carries; the editor never touches it.
struct PointEntry {
    quint8 PosTor = 0;     // 0..7 position or torque mode code
    quint8 AbsInc = 0;     // 0 absolute, 1 incremental
    qint32 Position = 0;   // -99999999..99999999
    quint8 Velocity = 0;   // velocity No. 0..9 of the command table
    quint8 AccConst = 0;   // ATC No. 0..9 of the command table
    qint32 WaitTime = 0;   // 0..65535
    quint8 NextStart = 0;  // 0..3 how the next point starts
    qint16 ModeWord = 0;
};

// ModeWord: bits 0-2 PosTor, bit 3 AbsInc, bits 4-5 NextStart.
inline void PackModeWord(PointEntry& entry) {
    entry.ModeWord = static_cast<qint16>(entry.PosTor + 8 * entry.AbsInc + 16 * entry.NextStart);
}
// Higher bits than 5 are the drive's business and ignored.
inline void UnpackModeWord(PointEntry& entry) {
    const auto word = static_cast<quint16>(entry.ModeWord);
    entry.PosTor = static_cast<quint8>(word & 0x7U);
    entry.AbsInc = static_cast<quint8>((word >> 3) & 0x1U);
    entry.NextStart = static_cast<quint8>((word >> 4) & 0x3U);
}

// The host's mirror of the drive's 64-point table and what the editor and transfer track.
struct PointTables {
    static constexpr int Count = 64;

    std::array<PointEntry, Count> PointTable{};
    // Changed in the program and not yet written to the drive: the next write sends these.
    std::array<bool, Count> PointChanged{};
    // The mirror holds a complete table from the drive or a file; only then can it be written.
    bool PointTableValid = false;
    // Point in transfer.
    int PointTransferIndex = 0;
    // The drive the table came from, or none.
    DriveId Origin;

    // The lowest marked point from `from` on.
    [[nodiscard]] std::optional<int> nextChanged(int from) const {
        for (int p = std::max(from, 0); p < Count; ++p) {
            if (PointChanged[static_cast<std::size_t>(p)])
                return p;
        }
        return std::nullopt;
    }
    [[nodiscard]] int changedCount() const {
        int n = 0;
        for (const bool changed : PointChanged)
            n += changed ? 1 : 0;
        return n;
    }
};

}  // namespace velora
