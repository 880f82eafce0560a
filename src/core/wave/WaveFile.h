#pragma once

#include "core/shared/WaveStore.h"

#include <QByteArray>
#include <QString>

namespace velora {

// The wave data file (.csv): an identification line, four lines of display and trigger
// settings, then the "now" and the previous record, one sample per line as
// "velocity,torque,logic", CR LF line ends. Reading takes the settings and the "now" record
// only, and only from a file that reads whole: a broken file changes nothing.
class WaveFile {
public:
    // The settings lines: list indexes and the texts of the three percent boxes.
    struct Settings {
        int Trig = 0;
        int LgcSel = 0;
        int Edge = 0;
        int Wave = 0;
        int VelScale = 2;
        int VelZero = 50;
        int TqScale = 1;
        int TqZero = 50;
        int TimeScale = 2;
        int TrigPosPercent = 50;
    };

    enum class Status {
        Ok,
        CannotOpen,      // missing, unreadable, too large, or could not be written
        Identification,  // the first line is not the identification
        Malformed,       // a later line is missing or is not what it must be
    };

    struct ReadResult {
        Status status = Status::CannotOpen;
        int line = 0;  // the first line that could not be read (1-based), for Malformed
        Settings settings;
        WaveStore::Record now{};
        WaveStore::LogicRecord nowLogic{};
    };

    static const QByteArray Identification;
    static constexpr int LineCount = 5 + 2 * WaveStore::SampleCount;

    // The whole file's bytes.
    [[nodiscard]] static QByteArray format(const Settings& settings, const WaveStore& store);
    // Writes the file so that an existing good file is replaced only by a complete new one.
    [[nodiscard]] static Status write(const QString& path, const Settings& settings,
                                      const WaveStore& store);
    [[nodiscard]] static ReadResult read(const QString& path);
};

}  // namespace velora
