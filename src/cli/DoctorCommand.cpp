#include "cli/CliCommand.h"
#include "cli/CliSession.h"
#include "core/connect/CheckCommand.h"
#include "core/shared/SettingsStore.h"

#include <QTextStream>

namespace velora::cli {

namespace {

const QString Search = QStringLiteral("search");

// The program's connection check (velora --check) as it is: its findings on stdout, and a
// problem found is a link failure for the script.
ExitCode runDoctor(CliSession& session, const CliArgs& args) {
    // The check takes the axis and the rate from the saved settings only; silently checking
    // another drive than the one asked for would mislead.
    for (const char* name : {"axis", "baud", "usb"}) {
        if (args.isSet(QLatin1String(name))) {
            session.fail(ExitCode::Usage,
                         QStringLiteral("doctor checks the saved axis and rate; it takes no --%1.")
                             .arg(QLatin1String(name)));
            return ExitCode::Usage;
        }
    }
    QTextStream out(stdout);
    const int problems = runCheckCommand(SettingsStore(), args.value(QStringLiteral("port")),
                                         args.isSet(Search), out);
    return problems == 0 ? ExitCode::Ok : ExitCode::LinkFailure;
}

}  // namespace

CliCommand doctorCommand() {
    CliCommand c;
    c.words = QStringList{QStringLiteral("doctor")};
    c.synopsis = QStringLiteral("doctor [--search]");
    c.summary = QStringLiteral(
        "Check the connection to the drive at the saved axis and rate (on --port DEVICE when "
        "given) and print one finding a line; exits 3 when a problem is found. --search: when "
        "the drive is silent, look for it at every axis and rate.");
    c.options = {QCommandLineOption(Search, QStringLiteral("Look for a silent drive."))};
    c.run = runDoctor;
    return c;
}

}  // namespace velora::cli
