#include "cli/CliCommand.h"
#include "cli/CliSession.h"
#include "core/params/ParamCatalogue.h"
#include "core/params/ParamFile.h"
#include "core/params/ParamTransfer.h"
#include "core/shared/TextCatalogue.h"

#include <algorithm>
#include <array>

namespace velora::cli {

namespace {

const QString Output = QStringLiteral("o");
const QString System = QStringLiteral("system");
const QString Ram = QStringLiteral("ram");
const QString DryRun = QStringLiteral("dry-run");

// The drive's values merged with a file the way the parameter window's Read File does while
// online: the drive is read, the file's values are loaded over them, and exactly the
// parameters whose value the file changes stay marked for the next write.
struct Merge {
    ExitCode code = ExitCode::Ok;
    std::array<qint32, ParamTables::Count> driveValues{};
};

Merge mergeFile(CliSession& session, ParamFile& file, const QString& path) {
    Merge merge;
    session.setFileInUse(path);
    ParamTransfer& transfer = session.params();
    const std::array<QMetaObject::Connection, 3> connections{
        QObject::connect(&transfer, &ParamTransfer::valuesRefreshed, &session,
                         [&] {
                             const auto& values = session.global().Params.ParamValue;
                             std::copy_n(values.begin(), ParamTables::Count,
                                         merge.driveValues.begin());
                         }),
        QObject::connect(&file, &ParamFile::fileLoaded, &session, [&] { session.finish(); }),
        QObject::connect(&file, &ParamFile::fileReadAbandoned, &session, [&] {
            session.fail(ExitCode::LinkFailure,
                         TextCatalogue::text(Language::English, Text::MsgCommunicationFailure));
        })};
    session.showReceiving(QStringLiteral("reading the drive's parameters"));
    // The comparing read needs a link that is up and answering, which identify() showed.
    session.engine().setMonitorRunning(true);
    const ParamFile::ReadResult result = file.read(path);
    if (result == ParamFile::ReadResult::Failed) {
        merge.code = ExitCode::FileError;
    } else {
        merge.code = session.exec();
    }
    session.endProgress();
    for (const QMetaObject::Connection& c : connections)
        QObject::disconnect(c);
    return merge;
}

// The parameter's caption without the number the window puts in front of it.
QString nameOf(int n) {
    QString label = ParamCatalogue::label(Language::English, n);
    const qsizetype colon = label.indexOf(QChar(0xFF1A));
    return colon >= 0 && colon < 4 ? label.mid(colon + 1).trimmed() : label.trimmed();
}

ExitCode readParams(CliSession& session, const CliArgs& args) {
    const QString path = args.value(Output);
    if (path.isEmpty()) {
        session.fail(ExitCode::Usage, QStringLiteral("params read needs -o FILE.prm."));
        return ExitCode::Usage;
    }
    if (const ExitCode up = session.connectAndIdentify(); up != ExitCode::Ok)
        return up;
    ParamTransfer& transfer = session.params();
    QObject::connect(&transfer, &ParamTransfer::transferFinished, &session,
                     [&session](ParamTransfer::Chain) { session.finish(); });
    session.showReceiving(QStringLiteral("reading the drive's parameters"));
    transfer.readAll();
    if (const ExitCode read = session.exec(); read != ExitCode::Ok)
        return read;
    session.endProgress();
    ParamFile file(session.engine(), transfer, session.global().Params);
    session.setFileInUse(path);
    // A failure was told by the file itself, and nothing was left at path.
    return file.write(path, args.isSet(System)) ? ExitCode::Ok : ExitCode::FileError;
}

ExitCode writeParams(CliSession& session, const CliArgs& args) {
    const QString path = args.positional.value(0);
    session.link().NonVolatileWrite[0] = !args.isSet(Ram);
    if (const ExitCode up = session.connectAndIdentify(); up != ExitCode::Ok)
        return up;
    ParamTransfer& transfer = session.params();
    ParamTables& tables = session.global().Params;
    ParamFile file(session.engine(), transfer, tables);
    if (const Merge merge = mergeFile(session, file, path); merge.code != ExitCode::Ok)
        return merge.code;
    if (!tables.nextChanged(0)) {
        CliSession::out(TextCatalogue::text(Language::English, Text::CliNothingWriteDriveAlready));
        return ExitCode::Ok;
    }
    if (!session.mayWrite(driverules::Table::Params))
        return ExitCode::Usage;
    if (args.isSet(DryRun)) {
        for (auto n = tables.nextChanged(0); n; n = tables.nextChanged(*n + 1))
            CliSession::out(transfer.writeCommand(*n));
        return ExitCode::Ok;
    }
    int written = 0;
    int total = 0;
    for (auto n = tables.nextChanged(0); n; n = tables.nextChanged(*n + 1))
        ++total;
    QObject::connect(&transfer, &ParamTransfer::parameterWritten, &session, [&](int n) {
        ++written;
        session.endProgress();
        CliSession::out(QStringLiteral("%1 %2 = %3")
                            .arg(n, 2, 10, QLatin1Char('0'))
                            .arg(nameOf(n))
                            .arg(tables.ParamValue[static_cast<std::size_t>(n)]));
        session.progress(QStringLiteral("writing parameters: %1/%2").arg(written).arg(total));
    });
    QObject::connect(&transfer, &ParamTransfer::transferFinished, &session,
                     [&session](ParamTransfer::Chain) { session.finish(); });
    session.setActivity(
        [&transfer] { return QStringLiteral("writing parameter %1").arg(transfer.paramIndex()); });
    transfer.writeChanged();
    const ExitCode code = session.exec();
    session.setActivity({});
    session.endProgress();
    return code;
}

ExitCode diffParams(CliSession& session, const CliArgs& args) {
    const QString path = args.positional.value(0);
    if (const ExitCode up = session.connectAndIdentify(); up != ExitCode::Ok)
        return up;
    ParamTables& tables = session.global().Params;
    ParamFile file(session.engine(), session.params(), tables);
    const Merge merge = mergeFile(session, file, path);
    if (merge.code != ExitCode::Ok)
        return merge.code;
    bool differs = false;
    for (auto n = tables.nextChanged(0); n; n = tables.nextChanged(*n + 1)) {
        const auto i = static_cast<std::size_t>(*n);
        CliSession::out(QStringLiteral("%1\t%2\t%3\t%4")
                            .arg(*n, 2, 10, QLatin1Char('0'))
                            .arg(nameOf(*n))
                            .arg(merge.driveValues[i])
                            .arg(tables.ParamValue[i]));
        differs = true;
    }
    return differs ? ExitCode::Differences : ExitCode::Ok;
}

}  // namespace

QList<CliCommand> paramsCommands() {
    CliCommand read;
    read.words = QStringList{QStringLiteral("params"), QStringLiteral("read")};
    read.synopsis = QStringLiteral("params read -o FILE.prm [--system]");
    read.summary = QStringLiteral(
        "Save the drive's 120 parameters to a parameter file. With --system the file says it "
        "carries the system parameters, so a write restores 60-119 too.");
    read.options = {
        QCommandLineOption(Output, QStringLiteral("The file to write."), QStringLiteral("FILE")),
        QCommandLineOption(System, QStringLiteral("Mark the system parameters."))};
    read.run = readParams;

    CliCommand write;
    write.words = QStringList{QStringLiteral("params"), QStringLiteral("write")};
    write.synopsis = QStringLiteral("params write FILE.prm [--ram] [--dry-run]");
    write.summary = QStringLiteral(
        "Write the parameters that differ between the file and the drive (00-59, or 00-119 "
        "from a file with system parameters); --ram: RAM only; --dry-run: print the commands.");
    write.options = {QCommandLineOption(Ram, QStringLiteral("Write to RAM only.")),
                     QCommandLineOption(DryRun, QStringLiteral("Only print what would be sent."))};
    write.argumentCount = 1;
    write.run = writeParams;

    CliCommand diff;
    diff.words = QStringList{QStringLiteral("params"), QStringLiteral("diff")};
    diff.synopsis = QStringLiteral("params diff FILE.prm");
    diff.summary = QStringLiteral(
        "List number, name, drive value and file value of every parameter that differs; exit "
        "code 1 when any does.");
    diff.argumentCount = 1;
    diff.run = diffParams;
    return {read, write, diff};
}

}  // namespace velora::cli
