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

    enum class Fate { Send, Drop, Corrupt, CutShort };

    int dropEveryNth = 0;                // drop every n-th reply on the line; 0 is off
    QHash<QString, int> dropCodes;       // code -> replies still to drop
    QHash<QString, int> corruptCodes;    // code -> replies still to corrupt
    QHash<QString, int> errorCodes;      // code -> error class answered instead of carrying it out
    QHash<QString, int> cutCodes;        // code -> replies still to cut short
    QHash<QString, int> duplicateCodes;  // code -> replies still to send twice
    QHash<QString, int> lateMs;          // code -> milliseconds its replies come late
    QHash<QString, QString> wrongCodes;  // code -> the code its replies carry instead
    QHash<QString, int> misaddressAxis;  // code -> the axis that hears these commands instead
    QHash<QString, int> misaddressCounts;  // code -> commands still to misaddress
    int delayMs = 0;                       // added to every reply's wait
    bool cablePulled = false;              // nothing is heard or answered
    std::optional<qint64> cablePullAtMs;   // the cable comes out this long after the start
    int alarm = 0;                         // alarm number every drive raises ...
    qint64 alarmAtMs = 0;                  // ... this long after the start

    // The error class to answer instead of carrying out code, if any.
    [[nodiscard]] std::optional<int> forcedError(const QString& code) const;
    // What happens to the next reply of code; spends the counters.
    [[nodiscard]] Fate fateOf(const QString& code);
    // The frame contents with one character after the code made a non-hex character 'G',
    // or 'G' appended when the reply has no data.
    [[nodiscard]] static QByteArray corrupted(const QByteArray& text);
    // The frame contents without the second half of the data.
    [[nodiscard]] static QByteArray cutShort(const QByteArray& text);
    // The per-code faults that keep the reply: another code, a later start, a second copy
    // (DuplicateLagMs after the first). Spends the counters.
    void reshape(const QString& code, QByteArray& text, int& delayMs, bool& duplicated);
    static constexpr int DuplicateLagMs = 100;
    // The axis whose drive hears a command of code instead of the addressed one (as if the
    // axis character were garbled on the line), if any; spends the counter.
    [[nodiscard]] std::optional<int> misaddressed(const QString& code);
    // Applies the time-based faults once the line has run elapsedMs; true when the plan
    // raises its alarm now.
    [[nodiscard]] bool advanceTo(qint64 elapsedMs);

    // Progress through the plan.
    qint64 repliesSeen = 0;
    bool alarmRaised = false;
};

}  // namespace velora::sim
