#include "sim/Payloads.h"

#include "sim/Hex.h"

namespace velora::sim::payload {

QString monitor(const MonitorValues& m, bool withTorquePeak) {
    QString s;
    s.reserve(95);
    s += hexField(m.nowPosition, 8);
    s += hexField(m.positionCommand, 8);
    s += hexField(m.deviation, 8);
    s += hexField(m.restPulses, 8);
    s += hexField(m.nowVelocity, 4);
    s += hexField(m.commandVelocity, 4);
    s += hexField(m.torque, 4);
    s += hexField(m.startPoint, 2);
    s += hexField(m.nowPoint, 2);
    s += hexField(m.nextPoint, 2);
    s += hexField(m.torqueLimit, 4);
    s += hexField(m.decZPulses, 8);
    s += hexField(m.ioWord, 4);
    s += hexField(m.statusWord, 4);
    s += hexField(m.alarmCode, 2);
    s += QString(19, QLatin1Char('0'));
    if (withTorquePeak)
        s += hexField(m.torquePeak, 4);
    return s;
}

QString allParameters(const DriveTables& t) {
    QString s;
    s.reserve(params::Count * 9);
    for (const qint32 v : t.params) {
        s += hexField(v, 8);
        s += QLatin1Char(Separator);
    }
    return s;
}

QString parameter(qint32 value) {
    return hexField(value, 8);
}

QString pointBlock(const PointEntry& p) {
    const QChar sep = QLatin1Char(Separator);
    return hexField(p.modeWord, 4) + sep + hexField(p.position, 8) + sep + hexField(p.velocity, 1) +
           sep + hexField(p.accConst, 1) + sep + hexField(p.waitTime, 4) + sep;
}

QString allPoints(const DriveTables& t) {
    QString s;
    s.reserve(PointCount * 23);
    for (const PointEntry& p : t.points)
        s += pointBlock(p);
    return s;
}

QString allCommands(const DriveTables& t) {
    QString s;
    s.reserve(180);
    const QChar sep = QLatin1Char(Separator);
    for (const qint32 v : t.velocity)
        s += hexField(v, 4) + sep;
    for (const qint32 v : t.atc)
        s += hexField(v, 8) + sep;
    for (const qint32 v : t.torque)
        s += hexField(v, 4) + sep;
    return s;
}

QString alarmData(const AlarmState& alarms) {
    QString s = hexField(alarms.mask(), 2);
    for (const int entry : alarms.history()) {
        s += QLatin1Char('0');
        s += QChar(QLatin1Char(static_cast<char>('0' + entry)));
    }
    return s;
}

QString waveRecord(const std::vector<WaveSample>& samples) {
    QString s;
    s.reserve(static_cast<int>(samples.size()) * 12);
    for (const WaveSample& w : samples) {
        s += hexField(w.velocity, 4);
        s += hexField(w.torque, 4);
        s += QLatin1Char(w.logic != 0 ? '1' : '0');
        s += QLatin1String("000");
    }
    return s;
}

}  // namespace velora::sim::payload
