#pragma once

#include "core/shared/DriveId.h"

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <optional>

namespace velora {

// The host's copy of the drive's command table: ten velocities, ten acceleration/deceleration
// time constants (ATC) and seven torque limits (No.1-7), addressed by the editor, the transfer
// and the file through one cell index: 0..9 velocity No.k, 10..19 ATC No.k-10, 21..27 torque
// No.k-20. Cell 20 has no entry.
struct ComTables {
    static constexpr int CellCount = 28;
    static constexpr int NoCell = 20;
    static constexpr int FirstAtcCell = 10;
    static constexpr int FirstTorqueCell = 21;

    enum class Column { Velocity, Atc, Torque, None };

    // Element 10 of the first two is a spare nothing uses; torque No.0 is the drive's own.
    std::array<qint16, 11> CmdVelocity{};
    std::array<qint32, 11> CmdAtc{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
    std::array<qint16, 8> CmdTorque{};
    // Edited or loaded and not yet written: the next write sends exactly these.
    std::array<bool, CellCount> ComChanged{};
    // The table holds values read from the drive or a file; only then can it be written.
    bool ComLoaded = false;
    // Cell in transfer.
    int ComIndex = 0;
    // The drive the table came from, or none.
    DriveId Origin;

    [[nodiscard]] static constexpr Column column(int k) {
        if (k >= 0 && k < FirstAtcCell)
            return Column::Velocity;
        if (k >= FirstAtcCell && k < NoCell)
            return Column::Atc;
        if (k >= FirstTorqueCell && k < CellCount)
            return Column::Torque;
        return Column::None;
    }
    // The entry's number within its column (row of the window): k, k - 10, k - 20.
    [[nodiscard]] static constexpr int number(int k) {
        switch (column(k)) {
            case Column::Atc:
                return k - FirstAtcCell;
            case Column::Torque:
                return k - NoCell;
            case Column::Velocity:
            case Column::None:
                break;
        }
        return k;
    }
    [[nodiscard]] static constexpr qint32 minimum(Column c) { return c == Column::Atc ? 1 : 0; }
    [[nodiscard]] static constexpr qint32 maximum(Column c) {
        switch (c) {
            case Column::Velocity:
                return 4500;
            case Column::Atc:
                return 999999;
            case Column::Torque:
                return 15000;
            case Column::None:
                break;
        }
        return 0;
    }

    [[nodiscard]] qint32 value(int k) const {
        const auto n = static_cast<std::size_t>(number(k));
        switch (column(k)) {
            case Column::Velocity:
                return CmdVelocity.at(n);
            case Column::Atc:
                return CmdAtc.at(n);
            case Column::Torque:
                return CmdTorque.at(n);
            case Column::None:
                break;
        }
        return 0;
    }
    // Stores as the column's element: 16-bit columns keep the low 16 bits.
    void setValue(int k, qint32 v) {
        const auto n = static_cast<std::size_t>(number(k));
        switch (column(k)) {
            case Column::Velocity:
                CmdVelocity.at(n) = static_cast<qint16>(v);
                break;
            case Column::Atc:
                CmdAtc.at(n) = v;
                break;
            case Column::Torque:
                CmdTorque.at(n) = static_cast<qint16>(v);
                break;
            case Column::None:
                break;
        }
    }

    [[nodiscard]] std::optional<int> nextChanged(int from) const {
        for (int k = std::max(from, 0); k < CellCount; ++k) {
            if (ComChanged[static_cast<std::size_t>(k)])
                return k;
        }
        return std::nullopt;
    }
    [[nodiscard]] int changedCount() const {
        return static_cast<int>(std::count(ComChanged.cbegin(), ComChanged.cend(), true));
    }
};

// The values at start-up: velocities and torques 0, every ATC 1.
inline void InitComTable(ComTables& tables) {
    tables = ComTables{};
}

}  // namespace velora
