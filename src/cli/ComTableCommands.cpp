#include "cli/CliCommand.h"
#include "cli/CliSession.h"
#include "core/comtable/ComFile.h"
#include "core/comtable/ComTransfer.h"
#include "core/shared/TextCatalogue.h"

namespace velora::cli {

namespace {

const QString Output = QStringLiteral("o");
const QString Ram = QStringLiteral("ram");

ExitCode readComTable(CliSession& session, const CliArgs& args) {
    const QString path = args.value(Output);
    if (path.isEmpty()) {
        session.fail(ExitCode::Usage, QStringLiteral("comtable read needs -o FILE.sct."));
        return ExitCode::Usage;
    }
    if (const ExitCode up = session.connectAndIdentify(); up != ExitCode::Ok)
        return up;
    ComTables& tables = session.global().Com;
    ComTransfer transfer(session.engine(), tables);
    QObject::connect(&transfer, &ComTransfer::transferFinished, &session,
                     [&session](ComTransfer::Chain) { session.finish(); });
    session.showReceiving(QStringLiteral("reading the command table"));
    transfer.readAll();
    if (const ExitCode read = session.exec(); read != ExitCode::Ok)
        return read;
    session.endProgress();
    ComFile file(session.engine(), tables);
    session.setFileInUse(path);
    // A failure was told by the file itself, and nothing was left at path.
    return file.write(path) ? ExitCode::Ok : ExitCode::FileError;
}

// The window's Read File then Write Servo: every cell of the file is marked and sent.
ExitCode writeComTable(CliSession& session, const CliArgs& args) {
    const QString path = args.positional.value(0);
    session.link().NonVolatileWrite[2] = !args.isSet(Ram);
    if (const ExitCode up = session.connectAndIdentify(); up != ExitCode::Ok)
        return up;
    ComTables& tables = session.global().Com;
    ComTransfer transfer(session.engine(), tables);
    ComFile file(session.engine(), tables);
    session.setFileInUse(path);
    if (file.read(path) != ComFile::ReadResult::Loaded)
        return ExitCode::FileError;
    const int total = tables.changedCount();
    int written = 0;
    QObject::connect(&transfer, &ComTransfer::cellWritten, &session, [&](int) {
        ++written;
        session.progress(
            QStringLiteral("writing the command table: %1/%2").arg(written).arg(total));
    });
    QObject::connect(&transfer, &ComTransfer::transferFinished, &session,
                     [&session](ComTransfer::Chain) { session.finish(); });
    session.setActivity([&transfer, &tables] {
        return QStringLiteral("sending %1")
            .arg(transfer.writeCommand(tables.nextChanged(0).value_or(0)));
    });
    if (!session.mayWrite(driverules::Table::Commands))
        return ExitCode::Usage;
    if (!transfer.writeChanged())
        return ExitCode::Ok;
    const ExitCode code = session.exec();
    session.setActivity({});
    session.endProgress();
    if (code == ExitCode::Ok)
        CliSession::out(TextCatalogue::text(Language::English, Text::MsgComTableWriteFinished));
    return code;
}

}  // namespace

QList<CliCommand> comTableCommands() {
    CliCommand read;
    read.words = QStringList{QStringLiteral("comtable"), QStringLiteral("read")};
    read.synopsis = QStringLiteral("comtable read -o FILE.sct");
    read.summary = QStringLiteral(
        "Save the drive's command table (velocities, ATCs, torques No.1-7) to a command table "
        "file.");
    read.options = {
        QCommandLineOption(Output, QStringLiteral("The file to write."), QStringLiteral("FILE"))};
    read.run = readComTable;

    CliCommand write;
    write.words = QStringList{QStringLiteral("comtable"), QStringLiteral("write")};
    write.synopsis = QStringLiteral("comtable write FILE.sct [--ram]");
    write.summary = QStringLiteral(
        "Write every cell of the file to the drive (VW/CW/QW); --ram: RAM only (VT/CT/QT).");
    write.options = {QCommandLineOption(Ram, QStringLiteral("Write to RAM only."))};
    write.argumentCount = 1;
    write.run = writeComTable;
    return {read, write};
}

}  // namespace velora::cli
