#include "sim/CommandLine.h"

#include <QRegularExpression>
#include <QStringList>

namespace velora::sim {

namespace {

const QString Device = QStringLiteral("device");
const QString Axes = QStringLiteral("axes");
const QString Fast = QStringLiteral("fast");
const QString Version = QStringLiteral("version");
const QString DropEvery = QStringLiteral("drop-every");
const QString DropCode = QStringLiteral("drop-code");
const QString Delay = QStringLiteral("delay");
const QString Corrupt = QStringLiteral("corrupt");
const QString Error = QStringLiteral("error");
const QString CablePull = QStringLiteral("cable-pull-after");
const QString Alarm = QStringLiteral("alarm");
const QString Cut = QStringLiteral("cut");
const QString Duplicate = QStringLiteral("duplicate");
const QString Late = QStringLiteral("late");
const QString WrongCode = QStringLiteral("wrong-code");
const QString Misaddress = QStringLiteral("misaddress");

std::optional<int> toInt(const QString& text, int lo, int hi) {
    bool ok = false;
    const int v = text.toInt(&ok);
    if (!ok || v < lo || v > hi)
        return std::nullopt;
    return v;
}

bool isCode(const QString& code) {
    static const QRegularExpression Code(QStringLiteral("^[A-Za-z][A-Za-z0-9]$"));
    return Code.match(code).hasMatch();
}

// CODE or CODE:COUNT into counts; COUNT absent means every reply of the code.
bool addCodeCounts(const QStringList& values, QHash<QString, int>& counts, QString* error) {
    for (const QString& value : values) {
        const QStringList parts = value.split(QLatin1Char(':'));
        const std::optional<int> count = parts.size() == 2 ? toInt(parts[1], 1, 1000000)
                                                           : std::optional<int>(FaultPlan::Forever);
        if (parts.size() > 2 || !isCode(parts[0]) || !count) {
            *error = QStringLiteral("bad CODE[:COUNT] value '%1'").arg(value);
            return false;
        }
        counts.insert(parts[0], *count);
    }
    return true;
}

// CODE:MS into the plan's late replies.
bool addCodeValues(const QStringList& values, FaultPlan& f, QString* error) {
    for (const QString& value : values) {
        const QStringList parts = value.split(QLatin1Char(':'));
        const std::optional<int> ms = parts.size() == 2 ? toInt(parts[1], 0, 600000) : std::nullopt;
        if (!ms || !isCode(parts[0])) {
            *error = QStringLiteral("bad --late value '%1'").arg(value);
            return false;
        }
        f.lateMs.insert(parts[0], *ms);
    }
    return true;
}

// CODE:OTHER into the codes replies carry instead.
bool addWrongCodes(const QStringList& values, QHash<QString, QString>& codes, QString* error) {
    for (const QString& value : values) {
        const QStringList parts = value.split(QLatin1Char(':'));
        if (parts.size() != 2 || !isCode(parts[0]) || !isCode(parts[1])) {
            *error = QStringLiteral("bad --wrong-code value '%1'").arg(value);
            return false;
        }
        codes.insert(parts[0], parts[1]);
    }
    return true;
}

// CODE:AXIS[:COUNT] into the plan's misaddressed commands.
bool addMisaddressed(const QStringList& values, FaultPlan& f, QString* error) {
    for (const QString& value : values) {
        const QStringList parts = value.split(QLatin1Char(':'));
        const std::optional<int> axis = parts.size() >= 2 ? toInt(parts[1], 0, 14) : std::nullopt;
        const std::optional<int> count = parts.size() == 3 ? toInt(parts[2], 1, 1000000)
                                                           : std::optional<int>(FaultPlan::Forever);
        if (parts.size() > 3 || !axis || !count || !isCode(parts[0])) {
            *error = QStringLiteral("bad --misaddress value '%1'").arg(value);
            return false;
        }
        f.misaddressAxis.insert(parts[0], *axis);
        f.misaddressCounts.insert(parts[0], *count);
    }
    return true;
}

}  // namespace

void CommandLine::addOptions(QCommandLineParser& parser) {
    parser.addOptions({
        {Device,
         QStringLiteral("Serve the drives on an existing serial device instead of creating a "
                        "pseudo-terminal. The device runs at the first drive's rate."),
         QStringLiteral("PATH")},
        {Axes,
         QStringLiteral("Comma-separated axis numbers of the drives on the line, 0-14 "
                        "(default 0)."),
         QStringLiteral("LIST"), QStringLiteral("0")},
        {Fast, QStringLiteral("Reply at once: no pacing at the line rate, no reply wait.")},
        {Version,
         QStringLiteral("Driver software version x 100 in parameter 119 (default 110). Below "
                        "110 the drive has no torque peak and refuses QP, EW, ED, EP."),
         QStringLiteral("N"), QStringLiteral("110")},
        {DropEvery, QStringLiteral("Fault: drop every N-th reply on the line."),
         QStringLiteral("N")},
        {DropCode,
         QStringLiteral("Fault: drop the replies to CODE, COUNT times or always. Repeatable."),
         QStringLiteral("CODE[:COUNT]")},
        {Delay, QStringLiteral("Fault: delay every reply by MS milliseconds more."),
         QStringLiteral("MS")},
        {Corrupt,
         QStringLiteral("Fault: put a non-hex character into the replies to CODE, COUNT times "
                        "or always. Repeatable."),
         QStringLiteral("CODE[:COUNT]")},
        {Error,
         QStringLiteral("Fault: answer CODE with error class K instead of carrying it out. "
                        "Repeatable."),
         QStringLiteral("CODE:K")},
        {Cut,
         QStringLiteral("Fault: cut the replies to CODE short (the second half of their data is "
                        "lost), COUNT times or always. Repeatable."),
         QStringLiteral("CODE[:COUNT]")},
        {Duplicate,
         QStringLiteral("Fault: send the replies to CODE twice, COUNT times or always. "
                        "Repeatable."),
         QStringLiteral("CODE[:COUNT]")},
        {Late, QStringLiteral("Fault: the replies to CODE come MS milliseconds late. Repeatable."),
         QStringLiteral("CODE:MS")},
        {WrongCode,
         QStringLiteral("Fault: the replies to CODE carry the code OTHER instead. Repeatable."),
         QStringLiteral("CODE:OTHER")},
        {Misaddress,
         QStringLiteral("Fault: commands CODE reach the drive on AXIS instead of the addressed "
                        "one (a garbled axis character), COUNT times or always. Repeatable."),
         QStringLiteral("CODE:AXIS[:COUNT]")},
        {CablePull,
         QStringLiteral("Fault: stop hearing and answering MS milliseconds after the start "
                        "(cable pulled)."),
         QStringLiteral("MS")},
        {Alarm,
         QStringLiteral("Fault: every drive raises alarm N (1-8), at the start or MS "
                        "milliseconds after it."),
         QStringLiteral("N[@MS]")},
    });
}

std::optional<SimOptions> CommandLine::options(const QCommandLineParser& parser, QString* error) {
    SimOptions o;
    o.devicePath = parser.value(Device);
    o.fast = parser.isSet(Fast);
    o.axes.clear();
    for (const QString& part : parser.value(Axes).split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const std::optional<int> axis = toInt(part.trimmed(), 0, 14);
        if (!axis) {
            *error = QStringLiteral("axis '%1' is not 0-14").arg(part);
            return std::nullopt;
        }
        if (!o.axes.contains(*axis))
            o.axes << *axis;
    }
    if (o.axes.isEmpty()) {
        *error = QStringLiteral("no axis given");
        return std::nullopt;
    }
    const std::optional<int> version = toInt(parser.value(Version), 0, 9999);
    if (!version) {
        *error = QStringLiteral("bad version '%1'").arg(parser.value(Version));
        return std::nullopt;
    }
    o.version = *version;

    FaultPlan& f = o.faults;
    const auto intOption = [&](const QString& name, int lo, int hi, int& out) {
        if (!parser.isSet(name))
            return true;
        const std::optional<int> v = toInt(parser.value(name), lo, hi);
        if (!v)
            *error = QStringLiteral("bad --%1 value '%2'").arg(name, parser.value(name));
        if (v)
            out = *v;
        return v.has_value();
    };
    int cablePull = -1;
    if (!intOption(DropEvery, 1, 1000000, f.dropEveryNth) ||
        !intOption(Delay, 0, 600000, f.delayMs) || !intOption(CablePull, 0, 86400000, cablePull) ||
        !addCodeCounts(parser.values(DropCode), f.dropCodes, error) ||
        !addCodeCounts(parser.values(Corrupt), f.corruptCodes, error) ||
        !addCodeCounts(parser.values(Cut), f.cutCodes, error) ||
        !addCodeCounts(parser.values(Duplicate), f.duplicateCodes, error) ||
        !addCodeValues(parser.values(Late), f, error) ||
        !addWrongCodes(parser.values(WrongCode), f.wrongCodes, error) ||
        !addMisaddressed(parser.values(Misaddress), f, error)) {
        return std::nullopt;
    }
    if (cablePull >= 0)
        f.cablePullAtMs = cablePull;
    for (const QString& value : parser.values(Error)) {
        const QStringList parts = value.split(QLatin1Char(':'));
        const std::optional<int> k = parts.size() == 2 ? toInt(parts[1], 0, 9) : std::nullopt;
        if (!k || !isCode(parts[0])) {
            *error = QStringLiteral("bad --error value '%1'").arg(value);
            return std::nullopt;
        }
        f.errorCodes.insert(parts[0], *k);
    }
    if (parser.isSet(Alarm)) {
        const QStringList parts = parser.value(Alarm).split(QLatin1Char('@'));
        const std::optional<int> n = toInt(parts[0], 1, 8);
        const std::optional<int> at =
            parts.size() == 2 ? toInt(parts[1], 0, 86400000) : std::optional<int>(0);
        if (parts.size() > 2 || !n || !at) {
            *error = QStringLiteral("bad --alarm value '%1'").arg(parser.value(Alarm));
            return std::nullopt;
        }
        f.alarm = *n;
        f.alarmAtMs = *at;
    }
    return o;
}

}  // namespace velora::sim
