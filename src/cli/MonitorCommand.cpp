#include "cli/CliCommand.h"
#include "cli/CliSession.h"
#include "core/monitor/MonitorSnapshot.h"
#include "core/monitor/RealTimeMonitor.h"
#include "core/shared/TextCatalogue.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QTimer>

#include <csignal>

namespace velora::cli {

namespace {

const QString Count = QStringLiteral("count");
const QString Format = QStringLiteral("format");

// Catalogue ids of the numerical monitor's value names (the last is the torque peak) and of
// the sixteen status bit names.
constexpr std::array<Text, MonitorSnapshot::ValueCount> ValueNames{
    Text::MonitorNowPosition,  Text::MonitorPositionCom,   Text::MonitorPosDeviation,
    Text::MonitorRestComPulse, Text::MonitorNowVelocity,   Text::MonitorComVelocity,
    Text::MonitorTorqueCom,    Text::MonitorStartPointNum, Text::MonitorNowPointNum,
    Text::MonitorNextPointNum, Text::MonitorTorqueLimit,   Text::MonitorDECMinusZPulse,
    Text::MonitorTorquePeak};
constexpr Text FirstStatusName = Text::MonitorServoOn;
constexpr int StatusBits = 16;
const QString AlarmColumn = QStringLiteral("Alarm Code");

volatile std::sig_atomic_t interrupted = 0;

QString csvField(const QString& text) {
    if (!text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"')))
        return text;
    return QLatin1Char('"') + QString(text).replace(QLatin1Char('"'), QStringLiteral("\"\"")) +
           QLatin1Char('"');
}

QString csvHeader() {
    QStringList names;
    for (const Text id : ValueNames)
        names << csvField(TextCatalogue::text(Language::English, id));
    for (int bit = 0; bit < StatusBits; ++bit)
        names << csvField(TextCatalogue::text(Language::English, FirstStatusName, bit));
    names << AlarmColumn;
    return names.join(QLatin1Char(','));
}

QString csvLine(const MonitorSnapshot& v) {
    QStringList fields;
    for (int i = 0; i < MonitorSnapshot::ValueCount; ++i)
        fields << v.valueText(i, QLocale::c());
    for (int bit = 0; bit < StatusBits; ++bit)
        fields << QString::number((v.StatusWord >> bit) & 1U);
    fields << QString::number(v.AlarmCode);
    return fields.join(QLatin1Char(','));
}

QString jsonLine(const MonitorSnapshot& v) {
    QJsonObject values;
    for (int i = 0; i < MonitorSnapshot::ValueCount; ++i) {
        const QString text = v.valueText(i, QLocale::c());
        values.insert(
            TextCatalogue::text(Language::English, ValueNames.at(static_cast<std::size_t>(i))),
            text.isEmpty() ? QJsonValue() : QJsonValue(text.toDouble()));
    }
    QJsonObject status;
    for (int bit = 0; bit < StatusBits; ++bit)
        status.insert(TextCatalogue::text(Language::English, FirstStatusName, bit),
                      ((v.StatusWord >> bit) & 1U) != 0);
    QJsonObject line;
    line.insert(QStringLiteral("values"), values);
    line.insert(QStringLiteral("status"), status);
    line.insert(AlarmColumn, v.AlarmCode);
    return QString::fromUtf8(QJsonDocument(line).toJson(QJsonDocument::Compact));
}

// --count (0: until interrupted) and --format; false after telling the user what is wrong.
bool readOptions(CliSession& session, const CliArgs& args, int& count, bool& csv) {
    count = 0;
    if (args.isSet(Count)) {
        bool ok = false;
        count = args.value(Count).toInt(&ok);
        if (!ok || count < 1) {
            session.fail(ExitCode::Usage, QStringLiteral("--count takes a whole number from 1."));
            return false;
        }
    }
    const QString format = args.isSet(Format) ? args.value(Format) : QStringLiteral("csv");
    if (format != QLatin1String("csv") && format != QLatin1String("json")) {
        session.fail(ExitCode::Usage, QStringLiteral("--format is csv or json."));
        return false;
    }
    csv = format == QLatin1String("csv");
    return true;
}

ExitCode runMonitor(CliSession& session, const CliArgs& args) {
    int count = 0;
    bool csv = true;
    if (!readOptions(session, args, count, csv))
        return ExitCode::Usage;
    if (const ExitCode opened = session.openLink(); opened != ExitCode::Ok)
        return opened;
    // A silent drive fails here with a clear message; the monitor chain itself never asks.
    if (const ExitCode identified = session.identify(); identified != ExitCode::Ok)
        return identified;

    RealTimeMonitor monitor(session.engine());
    int lines = 0;
    // The chain stalls without a word when the drive stops answering; say so instead.
    QTimer watchdog;
    watchdog.setSingleShot(true);
    watchdog.setInterval(session.global().RetryTime * 8 + 1000);
    QObject::connect(&watchdog, &QTimer::timeout, &session, [&session] {
        session.fail(ExitCode::LinkFailure,
                     TextCatalogue::text(Language::English, Text::MsgCommunicationFailure));
    });
    QObject::connect(&monitor, &RealTimeMonitor::snapshot, &session,
                     [&](const MonitorSnapshot& values) {
                         CliSession::out(csv ? csvLine(values) : jsonLine(values));
                         watchdog.start();
                         if (count > 0 && ++lines >= count) {
                             session.link().RealTimeMonitor = false;
                             session.finish();
                         }
                     });
    // Ctrl+C ends the run in order, so that a trace is still written.
    interrupted = 0;
    std::signal(SIGINT, [](int) { interrupted = 1; });
    std::signal(SIGTERM, [](int) { interrupted = 1; });
    QTimer interruption;
    QObject::connect(&interruption, &QTimer::timeout, &session, [&session] {
        if (interrupted != 0) {
            session.link().RealTimeMonitor = false;
            session.finish();
        }
    });
    interruption.start(100);
    if (csv)
        CliSession::out(csvHeader());
    watchdog.start();
    monitor.setMonitorSwitch(true);
    const ExitCode code = session.exec();
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    return code;
}

}  // namespace

CliCommand monitorCommand() {
    CliCommand c;
    c.words = QStringList{QStringLiteral("monitor")};
    c.synopsis = QStringLiteral("monitor [--count N] [--format csv|json]");
    c.summary = QStringLiteral(
        "One line per monitor reply: the thirteen values of the numerical monitor, the sixteen "
        "status bits and the alarm code (CSV with a header line, or JSON); until Ctrl+C "
        "without --count.");
    c.options = {
        QCommandLineOption(Count, QStringLiteral("Stop after N lines."), QStringLiteral("N")),
        QCommandLineOption(Format, QStringLiteral("csv (default) or json."),
                           QStringLiteral("FORMAT"))};
    c.run = runMonitor;
    return c;
}

}  // namespace velora::cli
