#include "core/wave/WaveFile.h"

#include "core/shared/BoundedLineReader.h"
#include "core/shared/SafeFileWrite.h"
#include "core/wave/WaveScale.h"

#include <QList>

#include <algorithm>
#include <limits>
#include <optional>

namespace velora {

namespace {

const QByteArray kLineEnd = QByteArrayLiteral("\r\n");

QByteArray joined(std::initializer_list<int> values) {
    QByteArray line;
    for (const int v : values) {
        if (!line.isEmpty())
            line += ',';
        line += QByteArray::number(v);  // C locale, no grouping, "-" for negatives
    }
    return line + kLineEnd;
}

// A single digit naming an entry of a list of `count` entries.
std::optional<int> indexField(const QByteArray& field, int count) {
    if (field.size() != 1 || field[0] < '0' || field[0] > '9')
        return std::nullopt;
    const int index = field[0] - '0';
    return index < count ? std::optional<int>(index) : std::nullopt;
}

std::optional<int> integerField(const QByteArray& field, int min, int max) {
    bool ok = false;
    const int value = field.toInt(&ok);
    if (!ok || value < min || value > max)
        return std::nullopt;
    return value;
}

// "scale index,percent text": the percent goes through the rule of its box.
bool scaleAndPercent(const QByteArray& line, int scaleCount, int& scale, int& percent) {
    const QList<QByteArray> fields = line.split(',');
    if (fields.size() != 2)
        return false;
    const std::optional<int> index = indexField(fields[0], scaleCount);
    const std::optional<int> value =
        integerField(fields[1], std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    if (!index || !value)
        return false;
    scale = *index;
    percent = *value;
    return true;
}

bool sampleLine(const QByteArray& line, WaveStore::Channels& channels, quint16& logic) {
    const qsizetype first = line.indexOf(',');
    const qsizetype second = first < 0 ? -1 : line.indexOf(',', first + 1);
    if (second < 0)
        return false;
    const std::optional<int> velocity = integerField(line.left(first), -32768, 32767);
    const std::optional<int> torque =
        integerField(line.mid(first + 1, second - first - 1), -32768, 32767);
    if (!velocity || !torque)
        return false;
    channels = {static_cast<qint16>(*velocity), static_cast<qint16>(*torque)};
    // The logic level: bit 0 of its digit, as the display draws it; anything else reads as low.
    const QByteArray rest = line.mid(second + 1);
    logic = rest.size() == 1 && rest[0] >= '0' && rest[0] <= '9'
                ? static_cast<quint16>((rest[0] - '0') & 1)
                : quint16(0);
    return true;
}

}  // namespace

const QByteArray WaveFile::Identification = QByteArrayLiteral("Orvix-Servo Wave Data File");

QByteArray WaveFile::format(const Settings& s, const WaveStore& store) {
    QByteArray content = Identification + kLineEnd;
    content += joined({s.Trig, s.LgcSel, s.Edge, s.Wave});
    content += joined({s.VelScale, s.VelZero});
    content += joined({s.TqScale, s.TqZero});
    content += joined({s.TimeScale, s.TrigPosPercent});
    for (int slot = 1; slot <= 2; ++slot) {
        for (int i = 0; i < WaveStore::SampleCount; ++i) {
            content +=
                joined({store.sample(slot, i, 0), store.sample(slot, i, 1), store.logic(slot, i)});
        }
    }
    return content;
}

WaveFile::Status WaveFile::write(const QString& path, const Settings& settings,
                                 const WaveStore& store) {
    return writeFileSafely(path, format(settings, store)) ? Status::Ok : Status::CannotOpen;
}

WaveFile::ReadResult WaveFile::read(const QString& path) {
    ReadResult result;
    BoundedLineReader file;
    if (file.open(path) != BoundedLineReader::OpenResult::Ok)
        return result;
    const std::optional<QByteArray> first = file.next();
    if (!first || *first != Identification) {
        result.status = Status::Identification;
        return result;
    }
    // The line at fault: the one just read, or the one that is missing.
    const auto fail = [&result, &file](const std::optional<QByteArray>& got) {
        result.status = Status::Malformed;
        result.line = file.lineCount() + (got ? 0 : 1);
        return result;
    };
    Settings& s = result.settings;
    const std::optional<QByteArray> trigger = file.next();
    if (!trigger)
        return fail(trigger);
    const QList<QByteArray> fields = trigger->split(',');
    const std::optional<int> trig = indexField(fields.value(0), wave::SourceCount);
    const std::optional<int> logic = indexField(fields.value(1), wave::LogicCount);
    const std::optional<int> edge = indexField(fields.value(2), wave::EdgeCount);
    if (fields.size() < 3 || !trig || !logic || !edge)
        return fail(trigger);
    s.Trig = *trig;
    s.LgcSel = *logic;
    s.Edge = *edge;
    // The display mode is the viewer's choice, not the file's.
    const std::optional<QByteArray> vel = file.next();
    if (!vel ||
        !scaleAndPercent(*vel, static_cast<int>(wave::VelScaleRpm.size()), s.VelScale, s.VelZero))
        return fail(vel);
    const std::optional<QByteArray> tq = file.next();
    if (!tq ||
        !scaleAndPercent(*tq, static_cast<int>(wave::TqScalePercent.size()), s.TqScale, s.TqZero))
        return fail(tq);
    const std::optional<QByteArray> time = file.next();
    if (!time || !scaleAndPercent(*time, static_cast<int>(wave::TimeScaleMs.size()), s.TimeScale,
                                  s.TrigPosPercent))
        return fail(time);
    s.VelZero = wave::limitZeroLevel(s.VelZero);
    s.TqZero = wave::limitZeroLevel(s.TqZero);
    // The trigger box accepts 20-80 %; a file cannot put the trigger where the user cannot.
    s.TrigPosPercent = std::clamp(s.TrigPosPercent, 20, 80);
    for (int i = 0; i < WaveStore::SampleCount; ++i) {
        const auto n = static_cast<std::size_t>(i);
        const std::optional<QByteArray> line = file.next();
        if (!line || !sampleLine(*line, result.now[n], result.nowLogic[n]))
            return fail(line);
    }
    result.status = Status::Ok;
    return result;
}

}  // namespace velora
