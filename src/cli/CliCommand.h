#pragma once

#include "cli/ExitCode.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QList>
#include <QStringList>

#include <functional>

namespace velora::cli {

class CliSession;

// What a subcommand is given: the parsed command line and the words after its own name.
struct CliArgs {
    const QCommandLineParser& parser;
    QStringList positional;

    [[nodiscard]] bool isSet(const QString& name) const { return parser.isSet(name); }
    [[nodiscard]] QString value(const QString& name) const { return parser.value(name); }
};

// One subcommand of velora-cli. A new one is a file that returns its CliCommand and one line
// in cliCommands(); parsing, the help text and the link choices come for free.
struct CliCommand {
    QStringList words;  // e.g. {"params", "read"}
    QString synopsis;   // the help's first column, e.g. "params read -o FILE.prm [--system]"
    QString summary;    // what it does, one sentence
    QList<QCommandLineOption> options;  // beside the link choices
    int argumentCount = 0;              // words after the name (e.g. the file of params write)
    std::function<ExitCode(CliSession&, const CliArgs&)> run;
};

// Every subcommand, in the order --help lists them.
[[nodiscard]] QList<CliCommand> cliCommands();

// One per file.
[[nodiscard]] CliCommand scanCommand();
[[nodiscard]] QList<CliCommand> paramsCommands();
[[nodiscard]] QList<CliCommand> pointsCommands();
[[nodiscard]] QList<CliCommand> comTableCommands();
[[nodiscard]] CliCommand sendCommand();
[[nodiscard]] CliCommand monitorCommand();
[[nodiscard]] CliCommand waveCommand();
[[nodiscard]] CliCommand doctorCommand();

}  // namespace velora::cli
