#include "sim/DriveCommands.h"

#include "sim/Hex.h"
#include "sim/Payloads.h"

#include <QList>

namespace velora::sim {

namespace {

using Refusal = DriveModel::Refusal;

CommandResult ok() {
    return CommandResult::reply();
}
CommandResult illegalData() {
    return CommandResult::error(DriveCommands::IllegalData);
}
CommandResult illegalCommand() {
    return CommandResult::error(DriveCommands::IllegalCommand);
}

CommandResult numberError(const ParsedNumber& n) {
    return n.error == NumberError::OutOfRange ? illegalData() : illegalCommand();
}

bool inRange(qint32 v, qint32 lo, qint32 hi) {
    return v >= lo && v <= hi;
}

}  // namespace

CommandResult CommandResult::reply(QString data) {
    return {Kind::Reply, std::move(data), 0};
}
CommandResult CommandResult::error(int errorClass) {
    return {Kind::Error, {}, errorClass};
}
CommandResult CommandResult::silent() {
    return {Kind::Silent, {}, 0};
}

DriveCommands::DriveCommands(DriveModel& model, WaveCapture& wave) : model_(model), wave_(wave) {
    addTransferCommands();
    addTableCommands();
    addOperatingCommands();
    addMotionCommands();
}

CommandResult DriveCommands::execute(const QString& code, QStringView data) {
    const auto it = handlers_.constFind(code);
    if (it == handlers_.constEnd())
        return illegalCommand();
    return (*it)(data);
}

void DriveCommands::add(const char* code, Handler handler) {
    handlers_.insert(QString::fromLatin1(code), std::move(handler));
}

DriveCommands::Handler DriveCommands::noData(std::function<CommandResult()> f) {
    return [f = std::move(f)](QStringView data) { return data.isEmpty() ? f() : illegalCommand(); };
}

DriveCommands::Handler DriveCommands::oneNumber(int bits, std::function<CommandResult(qint32)> f) {
    return [bits, f = std::move(f)](QStringView data) {
        const ParsedNumber n = parseNumber(data, bits);
        return n.value ? f(*n.value) : numberError(n);
    };
}

DriveCommands::Handler DriveCommands::twoNumbers(int firstBits, int secondBits,
                                                 std::function<CommandResult(qint32, qint32)> f) {
    return [firstBits, secondBits, f = std::move(f)](QStringView data) {
        const QList<QStringView> parts = data.split(QLatin1Char(';'));
        if (parts.size() != 2)
            return illegalCommand();
        const ParsedNumber a = parseNumber(parts[0], firstBits);
        if (!a.value)
            return numberError(a);
        const ParsedNumber b = parseNumber(parts[1], secondBits);
        if (!b.value)
            return numberError(b);
        return f(*a.value, *b.value);
    };
}

CommandResult DriveCommands::fromRefusal(Refusal refusal) {
    return refusal == Refusal::None ? ok() : CommandResult::error(ExecutionFailure);
}

CommandResult DriveCommands::needsVersion110(const std::function<void()>& action) const {
    // Drives before 1.10 do not know these codes.
    if (model_.version() < 110)
        return illegalCommand();
    action();
    return ok();
}

void DriveCommands::addTransferCommands() {
    add("ma", noData([this] {
            return CommandResult::reply(
                payload::monitor(model_.monitor(), model_.version() >= 110));
        }));
    add("pa", noData([this] {
            return CommandResult::reply(payload::allParameters(model_.memory().ram()));
        }));
    add("PR", oneNumber(16, [this](qint32 n) {
            if (!inRange(n, 0, params::Count - 1))
                return illegalData();
            return CommandResult::reply(payload::parameter(model_.memory().param(n)));
        }));
    for (const bool nv : {true, false}) {
        add(nv ? "PW" : "PT", twoNumbers(16, 32, [this, nv](qint32 n, qint32 v) {
                return model_.memory().writeParam(n, v, nv) ? ok() : illegalData();
            }));
    }
    add("AD", noData([this] { return CommandResult::reply(payload::alarmData(model_.alarms())); }));
    add("AR", noData([this] {
            model_.resetAlarms();
            return ok();
        }));
    add("HC", noData([this] {
            model_.clearAlarmHistory();
            return ok();
        }));
    add("wm", [this](QStringView data) { return waveSettings(data, true); });
    add("wt", [this](QStringView data) { return waveSettings(data, false); });
    add("wq", noData([this] {
            wave_.cancel();
            return ok();
        }));
}

void DriveCommands::addTableCommands() {
    add("ta",
        noData([this] { return CommandResult::reply(payload::allPoints(model_.memory().ram())); }));
    add("TR", oneNumber(8, [this](qint32 n) {
            if (!inRange(n, 0, PointCount - 1))
                return illegalData();
            const auto& p = model_.memory().ram().points[static_cast<std::size_t>(n)];
            return CommandResult::reply(payload::pointBlock(p));
        }));
    add("TW", [this](QStringView data) { return writePoint(data, true); });
    add("TT", [this](QStringView data) { return writePoint(data, false); });
    add("ca", noData([this] {
            return CommandResult::reply(payload::allCommands(model_.memory().ram()));
        }));

    const auto readEntry = [this](auto member, int count, int width) {
        return oneNumber(8, [this, member, count, width](qint32 n) {
            if (!inRange(n, 0, count - 1))
                return illegalData();
            const auto& table = model_.memory().ram().*member;
            return CommandResult::reply(hexField(table[static_cast<std::size_t>(n)], width));
        });
    };
    add("VR", readEntry(&DriveTables::velocity, VelocityCount, 4));
    add("CR", readEntry(&DriveTables::atc, AtcCount, 8));
    add("QR", readEntry(&DriveTables::torque, TorqueCount, 4));

    using Writer = bool (DriveMemory::*)(int, qint32, bool);
    const auto writeEntry = [this](Writer writer, int valueBits, bool nv) {
        return twoNumbers(8, valueBits, [this, writer, nv](qint32 n, qint32 v) {
            return (model_.memory().*writer)(n, v, nv) ? ok() : illegalData();
        });
    };
    add("VW", writeEntry(&DriveMemory::writeVelocity, 16, true));
    add("VT", writeEntry(&DriveMemory::writeVelocity, 16, false));
    add("CW", writeEntry(&DriveMemory::writeAtc, 32, true));
    add("CT", writeEntry(&DriveMemory::writeAtc, 32, false));
    add("QW", writeEntry(&DriveMemory::writeTorque, 16, true));
    add("QT", writeEntry(&DriveMemory::writeTorque, 16, false));
}

void DriveCommands::addOperatingCommands() {
    add("ES", noData([this] {
            model_.emergencyStop();
            return ok();
        }));
    add("SO", noData([this] { return fromRefusal(model_.servoOn()); }));
    add("SF", noData([this] {
            model_.servoOff();
            return ok();
        }));
    add("DO", noData([this] {
            model_.setDecSignal(true);
            return ok();
        }));
    add("DF", noData([this] {
            model_.setDecSignal(false);
            return ok();
        }));
    add("NW", oneNumber(32, [this](qint32 v) {
            model_.setPosition(v);
            return ok();
        }));
    add("TP", noData([this] { return fromRefusal(model_.teachPoint()); }));
    for (const int r : {0, 1}) {
        add(r == 0 ? "R0" : "R1", noData([this, r] {
                model_.selectResolution(r);
                return ok();
            }));
    }
    add("TS", oneNumber(16, [this](qint32 n) {
            if (!inRange(n, 0, TorqueCount - 1))
                return illegalData();
            model_.selectTorque(n);
            return ok();
        }));
    add("RT", noData([this] {
            return model_.reset() == Refusal::None ? CommandResult::silent()
                                                   : CommandResult::error(ExecutionFailure);
        }));
    add("QP", noData([this] { return needsVersion110([this] { model_.resetTorquePeak(); }); }));
    add("EW", noData([this] { return needsVersion110([this] { model_.memory().store(); }); }));
    add("ED", noData([this] { return needsVersion110([this] { model_.memory().reload(); }); }));
    add("EP", noData([this] {
            return needsVersion110([this] { model_.memory().loadFactoryValues(); });
        }));
}

void DriveCommands::addMotionCommands() {
    add("SP", oneNumber(16, [this](qint32 n) {
            if (!inRange(n, 0, PointCount - 1))
                return illegalData();
            model_.setStartPoint(n);
            return ok();
        }));
    add("ON", noData([this] { return fromRefusal(model_.startOn()); }));
    add("OF", noData([this] { return fromRefusal(model_.startOff()); }));
    add("ZO", noData([this] { return fromRefusal(model_.zeroReturnOn()); }));
    add("ZF", noData([this] { return fromRefusal(model_.zeroReturnOff()); }));
    add("VO", noData([this] { return fromRefusal(model_.velocityOn()); }));
    add("VF", noData([this] { return fromRefusal(model_.velocityOff()); }));
    add("VS", oneNumber(16, [this](qint32 n) {
            if (!inRange(n, 0, VelocityCount - 1))
                return illegalData();
            model_.selectVelocity(n);
            return ok();
        }));
    add("VP", noData([this] {
            model_.setVelocityNegative(false);
            return ok();
        }));
    add("VN", noData([this] {
            model_.setVelocityNegative(true);
            return ok();
        }));
    add("PJ", noData([this] { return fromRefusal(model_.jog(false)); }));
    add("NJ", noData([this] { return fromRefusal(model_.jog(true)); }));
    add("JF", noData([this] { return fromRefusal(model_.jogOff()); }));
    static constexpr const char* Steps[] = {"S0", "S1", "S2", "S3"};
    for (int n = 0; n < 4; ++n) {
        add(Steps[n], noData([this, n] { return fromRefusal(model_.step(n)); }));
    }
}

CommandResult DriveCommands::writePoint(QStringView data, bool nonVolatile) {
    const QList<QStringView> parts = data.split(QLatin1Char(';'));
    if (parts.size() != 6)
        return illegalCommand();
    static constexpr int Bits[] = {8, 16, 32, 8, 8, 32};
    qint32 v[6] = {};
    for (int i = 0; i < 6; ++i) {
        const ParsedNumber n = parseNumber(parts[i], Bits[i]);
        if (!n.value)
            return numberError(n);
        v[i] = *n.value;
    }
    const PointEntry entry{v[1], v[2], v[3], v[4], v[5]};
    return model_.memory().writePoint(v[0], entry, nonVolatile) ? ok() : illegalData();
}

CommandResult DriveCommands::waveSettings(QStringView data, bool arm) {
    if (data.size() < 5)
        return illegalCommand();
    int digits[4] = {};
    for (int i = 0; i < 4; ++i) {
        const char16_t c = data[i].unicode();
        if (c < u'0' || c > u'9')
            return illegalCommand();
        digits[i] = c - u'0';
    }
    const ParsedNumber position = parseNumber(data.mid(4), 32);
    if (!position.value)
        return numberError(position);
    if (digits[0] > 5 || digits[1] > 3 || digits[2] > 2 || digits[3] > 3 ||
        !inRange(*position.value, 0, 256)) {
        return illegalData();
    }
    WaveSettings s;
    s.timeScale = digits[0];
    s.source = digits[1];
    s.logic = digits[2];
    s.edge = digits[3];
    s.triggerPosition = *position.value;
    wave_.setSettings(s);
    if (arm)
        wave_.arm();
    return ok();
}

}  // namespace velora::sim
