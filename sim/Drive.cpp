#include "sim/Drive.h"

#include "sim/Payloads.h"

#include <algorithm>
#include <cmath>

namespace velora::sim {

Drive::Drive(int axis, int version) : model_(axis, version), commands_(model_, wave_) {
}

QChar Drive::axisCharacter() const {
    return QChar(QLatin1Char("0123456789ABCDEF"[model_.axis() & 0xF]));
}

CommandResult Drive::run(const QString& text) {
    if (text.size() < 3 || text.size() > DriveCommands::MaxTextLength) {
        return CommandResult::error(DriveCommands::IllegalCommand);
    }
    const QString code = text.mid(1, 2);
    const CommandResult result = commands_.execute(code, QStringView(text).mid(3));
    // A reset drops whatever the recorder was doing; nothing of it is sent any more.
    if (code == QLatin1String("RT") && result.kind == CommandResult::Kind::Silent) {
        wave_.cancel();
        unsolicited_.clear();
    }
    return result;
}

std::optional<QString> Drive::execute(const QString& text) {
    const CommandResult result = run(text);
    switch (result.kind) {
        case CommandResult::Kind::Silent:
            return std::nullopt;
        case CommandResult::Kind::Error:
            return errorReply(result.errorClass);
        case CommandResult::Kind::Reply:
            break;
    }
    return QString(axisCharacter()) + text.mid(1, 2) + result.data;
}

void Drive::executeBroadcast(const QString& text) {
    (void)run(text);
}

QString Drive::errorReply(int errorClass) const {
    return QString(axisCharacter()) + QLatin1String("ER") + QString::number(errorClass);
}

WaveSnapshot Drive::snapshot() const {
    const MotionModel& m = model_.motion();
    const auto clamp16 = [](double v) {
        return static_cast<qint16>(std::clamp<long>(std::lround(v), -32768, 32767));
    };
    const int status = model_.statusWord();
    WaveSnapshot s;
    s.velocity = clamp16(m.actualVelocity());
    s.torque = clamp16(m.torque() / 10.0);
    s.logic = ((status >> DriveModel::InpositionBit) & 1) |
              (((status >> DriveModel::TorqueLimitBit) & 1) << 1) |
              (((status >> DriveModel::VelocityLimitBit) & 1) << 2);
    return s;
}

void Drive::advance(int ms) {
    const QString axis(axisCharacter());
    for (int i = 0; i < ms; ++i) {
        model_.advance(1);
        switch (wave_.record(snapshot())) {
            case WaveCapture::Event::Triggered:
                unsolicited_ << axis + QLatin1String("wr");
                break;
            case WaveCapture::Event::Completed:
                unsolicited_ << axis + QLatin1String("wd") + payload::waveRecord(wave_.samples());
                break;
            case WaveCapture::Event::None:
                break;
        }
    }
}

QStringList Drive::takeUnsolicited() {
    QStringList out;
    out.swap(unsolicited_);
    return out;
}

}  // namespace velora::sim
