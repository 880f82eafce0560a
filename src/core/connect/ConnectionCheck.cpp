#include "core/connect/ConnectionCheck.h"

#include "core/link/WireFormat.h"
#include "core/shared/LinkState.h"
#include "core/shared/TextId.h"

namespace velora {

namespace {

using Verdict = Finding::Verdict;

// Text ids of the findings; each text carries its fix.
constexpr Text kExists = Text::CheckExists;
constexpr Text kMissing = Text::CheckMissing;
constexpr Text kMayOpen = Text::CheckMayOpen;
constexpr Text kNotInGroup = Text::CheckNotInGroup;
constexpr Text kGroupNotYetActive = Text::CheckGroupNotYetActive;
constexpr Text kNoAccess = Text::CheckNoAccess;
constexpr Text kNotBusy = Text::CheckNotBusy;
constexpr Text kBusy = Text::CheckBusy;
constexpr Text kStaleLock = Text::CheckStaleLock;
constexpr Text kLiveLock = Text::CheckLiveLock;
constexpr Text kBrltty = Text::CheckBrltty;
constexpr Text kModemManager = Text::CheckModemManager;
constexpr Text kLowLatencyOn = Text::CheckLowLatencyOn;
constexpr Text kLowLatencyOff = Text::CheckLowLatencyOff;
constexpr Text kAnswered = Text::CheckAnswered;
constexpr Text kSilent = Text::CheckSilent;
constexpr Text kNotOpened = Text::CheckNotOpened;
constexpr Text kNotApplicable = Text::CheckNotApplicable;
constexpr Text kHeldBySimulator = Text::StatusBarHeldBySimulator;

// The simulator keeps its end of a pseudo-terminal open: on such a line it is the drive.
bool isSimulator(const DeviceHolder& holder, const DeviceFacts& f) {
    return f.pseudoTerminal && holder.name == QLatin1String("velora-sim");
}

QString modeText(uint mode) {
    return QStringLiteral("%1").arg(mode, 3, 8, QLatin1Char('0'));
}

Finding accessFinding(const QString& device, const DeviceFacts& f) {
    const QStringList node{device, f.owner, f.group, modeText(f.mode)};
    if (f.mayOpen)
        return {Verdict::Ok, kMayOpen, node};
    const bool groupMayUse = (f.mode & 060) == 060;
    if (groupMayUse && f.memberGroups.contains(f.group) && !f.sessionGroups.contains(f.group))
        return {Verdict::Problem, kGroupNotYetActive, {device, f.group}};
    if (groupMayUse && !f.memberGroups.contains(f.group)) {
        return {Verdict::Problem, kNotInGroup,
                node + QStringList{QStringLiteral("sudo usermod -aG %1 %2").arg(f.group, f.user)}};
    }
    return {Verdict::Problem, kNoAccess,
            node + QStringList{QStringLiteral("sudo chmod 666 %1").arg(device)}};
}

}  // namespace

ConnectionCheck::ConnectionCheck()
    : ConnectionCheck(&gatherDeviceFacts, [](const CheckTarget& target) {
          LineTestResult result = runLineTest(target.device, target.axis, target.baud);
          // In the language of the line test's own link, as the finding quotes it.
          result.open.advise(adviceForFailedOpen(result.open, LinkState().LanguageId));
          return result;
      }) {
}

ConnectionCheck::ConnectionCheck(FactSource facts, LineTester lineTest)
    : facts_(std::move(facts)), lineTest_(std::move(lineTest)) {
}

QList<Finding> ConnectionCheck::deviceFindings(const QString& device, const DeviceFacts& f) {
    QList<Finding> findings;
    if (!f.applies) {
        findings.append({Verdict::Skipped, kNotApplicable, {}});
        return findings;
    }
    if (!f.exists) {
        findings.append({Verdict::Problem, kMissing, {device}});
    } else {
        findings.append({Verdict::Ok, kExists, {device}});
        findings.append(accessFinding(device, f));
        for (const DeviceHolder& holder : f.holders) {
            if (isSimulator(holder, f)) {
                findings.append(
                    {Verdict::Ok, kHeldBySimulator, {device, QString::number(holder.pid)}});
                continue;
            }
            findings.append({Verdict::Problem,
                             kBusy,
                             {device, holder.name, QString::number(holder.pid),
                              QStringLiteral("kill %1").arg(holder.pid)}});
        }
    }
    if (f.lock && f.lock->processAlive) {
        findings.append({Verdict::Problem,
                         kLiveLock,
                         {f.lock->path, f.lock->processName, QString::number(f.lock->pid),
                          QStringLiteral("kill %1").arg(f.lock->pid)}});
    } else if (f.lock) {
        findings.append({Verdict::Problem,
                         kStaleLock,
                         {f.lock->path, QString::number(f.lock->pid),
                          QStringLiteral("sudo rm %1").arg(f.lock->path)}});
    }
    const bool othersHold = std::any_of(f.holders.cbegin(), f.holders.cend(),
                                        [&f](const DeviceHolder& h) { return !isSimulator(h, f); });
    if (f.exists && !othersHold && !(f.lock && f.lock->processAlive))
        findings.append({Verdict::Ok, kNotBusy, {device}});
    if (f.brlttyInstalled)
        findings.append({Verdict::Problem, kBrltty, {}});
    if (f.modemManagerInstalled)
        findings.append({Verdict::Note, kModemManager, {}});
    return findings;
}

QString ConnectionCheck::openFailureAdvice(const QString& device, const DeviceFacts& facts,
                                           Language languageId) {
    // The first problem is the likely cause: a missing device before its rights, a lock before
    // a holder.
    for (const Finding& finding : ConnectionCheck::deviceFindings(device, facts)) {
        if (finding.verdict == Finding::Verdict::Problem)
            return finding.text(languageId);
    }
    return QString();
}

QString ConnectionCheck::adviceForFailedOpen(const OpenResult& failed, Language languageId) {
    if (failed.error != OpenError::Port)
        return QString();
    return openFailureAdvice(failed.device, gatherDeviceFacts(failed.device), languageId);
}

QList<Finding> ConnectionCheck::lineFindings(const CheckTarget& target,
                                             const LineTestResult& result,
                                             const DeviceFacts& facts) {
    QList<Finding> findings;
    if (!result.open.ok) {
        findings.append({Verdict::Problem, kNotOpened, {target.device, result.open.reason}});
        return findings;
    }
    if (result.lowLatency == LowLatency::On) {
        findings.append({Verdict::Ok, kLowLatencyOn, {target.device}});
    } else if (result.lowLatency == LowLatency::Refused) {
        const QString fix =
            facts.latencyTimerPath.isEmpty()
                ? QStringLiteral("sudo setserial %1 low_latency").arg(target.device)
                : QStringLiteral("echo 1 | sudo tee %1").arg(facts.latencyTimerPath);
        findings.append({Verdict::Note, kLowLatencyOff, {target.device, fix}});
    }
    const QString axis = QString::number(target.axis);
    const QString baud = QString::number(target.baud);
    if (result.answered) {
        const QString version = QStringLiteral("%1.%2")
                                    .arg(result.driverVersion / 100)
                                    .arg(result.driverVersion % 100, 2, 10, QLatin1Char('0'));
        findings.append({Verdict::Ok, kAnswered, {axis, baud, version}});
    } else {
        findings.append({Verdict::Problem, kSilent, {axis, baud}});
    }
    return findings;
}

QList<Finding> ConnectionCheck::run(const CheckTarget& target) const {
    const DeviceFacts facts = facts_(target.device);
    QList<Finding> findings = deviceFindings(target.device, facts);
    // Every drive ignores a command to all axes; there is nothing to test then.
    const bool triable = !facts.applies || (facts.exists && facts.mayOpen);
    if (!triable || target.axis == wire::AllAxes)
        return findings;
    const LineTestResult line = lineTest_(target);
    if (line.answered) {
        // Another program has the device open or locked as well, yet the drive answers: worth
        // knowing, not a fault (the simulator holds its own line this way).
        for (Finding& finding : findings) {
            if (finding.textId == kBusy || finding.textId == kLiveLock)
                finding.verdict = Verdict::Note;
        }
    }
    return findings + lineFindings(target, line, facts);
}

bool ConnectionCheck::hasProblem(const QList<Finding>& findings) {
    return std::any_of(findings.cbegin(), findings.cend(),
                       [](const Finding& f) { return f.verdict == Verdict::Problem; });
}

bool ConnectionCheck::driveSilent(const QList<Finding>& findings) {
    return std::any_of(findings.cbegin(), findings.cend(),
                       [](const Finding& f) { return f.textId == kSilent; });
}

}  // namespace velora
