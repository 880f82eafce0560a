#include "cli/CliCommand.h"
#include "cli/CliSession.h"
#include "core/pointtable/PointFile.h"
#include "core/pointtable/PointTransfer.h"
#include "core/shared/TextCatalogue.h"

namespace velora::cli {

namespace {

const QString Output = QStringLiteral("o");
const QString Ram = QStringLiteral("ram");

ExitCode readPoints(CliSession& session, const CliArgs& args) {
    const QString path = args.value(Output);
    if (path.isEmpty()) {
        session.fail(ExitCode::Usage, QStringLiteral("points read needs -o FILE.tbl."));
        return ExitCode::Usage;
    }
    if (const ExitCode up = session.connectAndIdentify(); up != ExitCode::Ok)
        return up;
    PointTables& tables = session.global().Points;
    PointTransfer transfer(session.engine(), tables);
    QObject::connect(&transfer, &PointTransfer::transferFinished, &session,
                     [&session](PointTransfer::Chain) { session.finish(); });
    session.showReceiving(QStringLiteral("reading the point table"));
    transfer.ReadAllPoints();
    if (const ExitCode read = session.exec(); read != ExitCode::Ok)
        return read;
    session.endProgress();
    PointFile file(session.engine(), tables);
    session.setFileInUse(path);
    // A failure was told by the file itself, and nothing was left at path.
    return file.WritePointFile(path) ? ExitCode::Ok : ExitCode::FileError;
}

// The window's Read File then Write Servo: every point of the file is marked, so the whole
// table is sent, and a point the drive already holds stays as it was.
ExitCode writePoints(CliSession& session, const CliArgs& args) {
    const QString path = args.positional.value(0);
    session.link().NonVolatileWrite[1] = !args.isSet(Ram);
    if (const ExitCode up = session.connectAndIdentify(); up != ExitCode::Ok)
        return up;
    PointTables& tables = session.global().Points;
    PointTransfer transfer(session.engine(), tables);
    PointFile file(session.engine(), tables);
    session.setFileInUse(path);
    if (file.ReadPointFile(path) != PointFile::ReadResult::Loaded)
        return ExitCode::FileError;
    const int total = tables.changedCount();
    int written = 0;
    QObject::connect(&transfer, &PointTransfer::pointWritten, &session, [&](int) {
        ++written;
        session.progress(QStringLiteral("writing points: %1/%2").arg(written).arg(total));
    });
    QObject::connect(&transfer, &PointTransfer::transferFinished, &session,
                     [&session](PointTransfer::Chain) { session.finish(); });
    session.setActivity([&tables] {
        return QStringLiteral("writing point %1").arg(tables.nextChanged(0).value_or(0));
    });
    if (!session.mayWrite(driverules::Table::Points))
        return ExitCode::Usage;
    if (!transfer.WriteChangedPoints())
        return ExitCode::Ok;
    const ExitCode code = session.exec();
    session.setActivity({});
    session.endProgress();
    if (code == ExitCode::Ok)
        CliSession::out(TextCatalogue::text(Language::English, Text::MsgPointTableWriteFinished));
    return code;
}

}  // namespace

QList<CliCommand> pointsCommands() {
    CliCommand read;
    read.words = QStringList{QStringLiteral("points"), QStringLiteral("read")};
    read.synopsis = QStringLiteral("points read -o FILE.tbl");
    read.summary = QStringLiteral("Save the drive's 64-point table to a point table file.");
    read.options = {
        QCommandLineOption(Output, QStringLiteral("The file to write."), QStringLiteral("FILE"))};
    read.run = readPoints;

    CliCommand write;
    write.words = QStringList{QStringLiteral("points"), QStringLiteral("write")};
    write.synopsis = QStringLiteral("points write FILE.tbl [--ram]");
    write.summary =
        QStringLiteral("Write every point of the file to the drive (TW); --ram: RAM only (TT).");
    write.options = {QCommandLineOption(Ram, QStringLiteral("Write to RAM only."))};
    write.argumentCount = 1;
    write.run = writePoints;
    return {read, write};
}

}  // namespace velora::cli
