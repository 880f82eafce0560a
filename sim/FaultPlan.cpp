#include "sim/FaultPlan.h"

#include <algorithm>

namespace velora::sim {

namespace {

// Spends one use of a per-code fault; true if the fault applies to this reply.
bool spend(QHash<QString, int>& counts, const QString& code) {
    const auto it = counts.find(code);
    if (it == counts.end() || it.value() == 0)
        return false;
    if (it.value() > 0)
        --it.value();
    return true;
}

}  // namespace

std::optional<int> FaultPlan::forcedError(const QString& code) const {
    const auto it = errorCodes.constFind(code);
    if (it == errorCodes.constEnd())
        return std::nullopt;
    return it.value();
}

FaultPlan::Fate FaultPlan::fateOf(const QString& code) {
    ++repliesSeen;
    if (dropEveryNth > 0 && repliesSeen % dropEveryNth == 0)
        return Fate::Drop;
    if (spend(dropCodes, code))
        return Fate::Drop;
    if (spend(corruptCodes, code))
        return Fate::Corrupt;
    if (spend(cutCodes, code))
        return Fate::CutShort;
    return Fate::Send;
}

QByteArray FaultPlan::cutShort(const QByteArray& text) {
    constexpr qsizetype Header = 3;  // axis character and code
    return text.left(Header + std::max<qsizetype>(text.size() - Header, 0) / 2);
}

void FaultPlan::reshape(const QString& code, QByteArray& text, int& delayMs, bool& duplicated) {
    if (const auto other = wrongCodes.constFind(code); other != wrongCodes.constEnd())
        text.replace(1, 2, other->toLatin1());
    delayMs += lateMs.value(code);
    duplicated = spend(duplicateCodes, code);
}

std::optional<int> FaultPlan::misaddressed(const QString& code) {
    if (!misaddressAxis.contains(code) || !spend(misaddressCounts, code))
        return std::nullopt;
    return misaddressAxis.value(code);
}

QByteArray FaultPlan::corrupted(const QByteArray& text) {
    QByteArray out = text;
    if (out.size() > 3) {
        out[3] = 'G';
    } else {
        out.append('G');
    }
    return out;
}

bool FaultPlan::advanceTo(qint64 elapsedMs) {
    if (cablePullAtMs && elapsedMs >= *cablePullAtMs) {
        cablePulled = true;
        cablePullAtMs.reset();
    }
    if (alarm != 0 && !alarmRaised && elapsedMs >= alarmAtMs) {
        alarmRaised = true;
        return true;
    }
    return false;
}

}  // namespace velora::sim
