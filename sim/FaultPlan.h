#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QtGlobal>

#include <optional>

namespace velora::sim {

// Faults the line injects, for testing how the PC copes. The line consults the plan for every
// command and every reply; counters in the plan count down as faults are spent.
struct FaultPlan {
    // How many replies of a code are still affected; Forever never runs out.
    static constexpr int Forever = -1;

    enum class Fate { Send, Drop, Corrupt };

    int dropEveryNth = 0;                 // drop every n-th reply on the line; 0 is off
    QHash<QString, int> dropCodes;        // code -> replies still to drop
    QHash<QString, int> corruptCodes;     // code -> replies still to corrupt
    QHash<QString, int> errorCodes;       // code -> error class answered instead of carrying it out
    int delayMs = 0;                      // added to every reply's wait
    bool cablePulled = false;             // nothing is heard or answered
    std::optional<qint64> cablePullAtMs;  // the cable comes out this long after the start
    int alarm = 0;                        // alarm number every drive raises ...
    qint64 alarmAtMs = 0;                 // ... this long after the start

    // The error class to answer instead of carrying out code, if any.
    [[nodiscard]] std::optional<int> forcedError(const QString& code) const;
    // What happens to the next reply of code; spends the counters.
    [[nodiscard]] Fate fateOf(const QString& code);
    // The frame contents with one character after the code made a non-hex character 'G',
    // or 'G' appended when the reply has no data.
    [[nodiscard]] static QByteArray corrupted(const QByteArray& text);
    // Applies the time-based faults once the line has run elapsedMs; true when the plan
    // raises its alarm now.
    [[nodiscard]] bool advanceTo(qint64 elapsedMs);

    // Progress through the plan.
    qint64 repliesSeen = 0;
    bool alarmRaised = false;
};

}  // namespace velora::sim
