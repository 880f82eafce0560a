#include "sim/DriveBus.h"

namespace velora::sim {

DriveBus::DriveBus(const QList<int>& axes, int version) {
    for (const int axis : axes)
        drives_.push_back(std::make_unique<Drive>(axis, version));
}

Drive* DriveBus::drive(int axis) {
    for (const auto& d : drives_) {
        if (d->axis() == axis)
            return d.get();
    }
    return nullptr;
}

void DriveBus::deliver(const QString& code, QByteArray text, int baud, int delayMs,
                       QList<OutgoingReply>& out) {
    switch (faults_.fateOf(code)) {
        case FaultPlan::Fate::Drop:
            return;
        case FaultPlan::Fate::Corrupt:
            text = FaultPlan::corrupted(text);
            break;
        case FaultPlan::Fate::CutShort:
            text = FaultPlan::cutShort(text);
            break;
        case FaultPlan::Fate::Send:
            break;
    }
    bool duplicated = false;
    faults_.reshape(code, text, delayMs, duplicated);
    out.append({text, baud, delayMs});
    if (duplicated)
        out.append({text, baud, delayMs + FaultPlan::DuplicateLagMs});
}

QList<OutgoingReply> DriveBus::receive(const QString& text, const LineSettings& line) {
    QList<OutgoingReply> out;
    if (faults_.cablePulled || text.isEmpty())
        return out;
    QChar axis = text.front();
    const bool broadcast = axis == QLatin1Char('F') || axis == QLatin1Char('f');
    const QString code = text.mid(1, 2);
    if (const std::optional<int> other = broadcast ? std::nullopt : faults_.misaddressed(code))
        axis = QLatin1Char("0123456789ABCDEF"[*other & 0xF]);
    for (const auto& d : drives_) {
        if (!line.heardAt(d->baudRate()))
            continue;
        if (broadcast) {
            if (!faults_.forcedError(code))
                d->executeBroadcast(text);
            continue;
        }
        if (axis != d->axisCharacter())
            continue;
        const std::optional<int> forced = faults_.forcedError(code);
        const std::optional<QString> reply = forced ? d->errorReply(*forced) : d->execute(text);
        if (!reply)
            continue;
        const int wait = (fast_ ? 0 : d->replyWaitMs()) + faults_.delayMs;
        deliver(code, reply->toLatin1(), d->baudRate(), wait, out);
    }
    return out;
}

QList<OutgoingReply> DriveBus::advance(int ms) {
    QList<OutgoingReply> out;
    if (ms <= 0)
        return out;
    elapsedMs_ += ms;
    if (faults_.advanceTo(elapsedMs_)) {
        for (const auto& d : drives_)
            d->model().raiseAlarm(faults_.alarm);
    }
    for (const auto& d : drives_) {
        d->advance(ms);
        for (const QString& reply : d->takeUnsolicited()) {
            if (faults_.cablePulled)
                continue;
            deliver(reply.mid(1, 2), reply.toLatin1(), d->baudRate(), faults_.delayMs, out);
        }
    }
    return out;
}

}  // namespace velora::sim
