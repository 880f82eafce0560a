// velora-cli: scripted work with Orvix drives on the core the program's windows use, without
// any window: Qt Core and the serial port only.

#include "cli/CliCommand.h"
#include "cli/CliSession.h"

#include <QCoreApplication>
#include <QSet>

#include <cstdio>

using namespace velora::cli;

namespace {

const QString Port = QStringLiteral("port");
const QString Axis = QStringLiteral("axis");
const QString Baud = QStringLiteral("baud");
const QString Usb = QStringLiteral("usb");
const QString Trace = QStringLiteral("trace");
const QString Help = QStringLiteral("help");

QList<QCommandLineOption> linkOptions() {
    return {
        QCommandLineOption(Port, QStringLiteral("Open DEVICE (e.g. /dev/ttyUSB0)."),
                           QStringLiteral("DEVICE")),
        QCommandLineOption(Axis, QStringLiteral("Axis number 0-15."), QStringLiteral("N")),
        QCommandLineOption(Baud, QStringLiteral("9600, 19200, 38400, 57600 or 115200."),
                           QStringLiteral("B")),
        QCommandLineOption(Usb, QStringLiteral("The USB-RS232C back-end.")),
        QCommandLineOption(Trace, QStringLiteral("Write every frame to FILE."),
                           QStringLiteral("FILE")),
        QCommandLineOption({QStringLiteral("h"), Help}, QStringLiteral("This help.")),
    };
}

// Text in lines of at most width characters, each after indent.
QString wrapped(const QString& text, int indent, int width = 78) {
    QString out;
    QString line;
    for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (!line.isEmpty() && indent + line.size() + 1 + word.size() > width) {
            out += QString(indent, QLatin1Char(' ')) + line + QLatin1Char('\n');
            line.clear();
        }
        line += (line.isEmpty() ? QString() : QStringLiteral(" ")) + word;
    }
    return out + QString(indent, QLatin1Char(' ')) + line + QLatin1Char('\n');
}

QString helpText(const QList<CliCommand>& commands) {
    QString h = QStringLiteral(
        "Usage: velora-cli [link options] COMMAND [arguments]\n\n"
        "Scripted work with Orvix servo drives on one serial line, with the same files and\n"
        "transfer rules as the Velora program.\n\nCommands:\n");
    for (const CliCommand& c : commands)
        h += QStringLiteral("  ") + wrapped(c.synopsis, 4).mid(4) + wrapped(c.summary, 6);
    h += QStringLiteral(
        "\n"
        "Link options (what is not given comes from Velora's saved settings, which are only "
        "read):\n"
        "  --port DEVICE   open DEVICE instead of the settings' port number\n"
        "  --axis N        axis number 0-15\n"
        "  --baud B        9600, 19200, 38400, 57600 or 115200 (USB-RS232C: up to 38400)\n"
        "  --usb           use the USB-RS232C back-end\n"
        "  --trace FILE    write every frame sent and received to FILE (all commands)\n\n"
        "Exit codes:\n"
        "  0  done\n"
        "  1  params diff: the drive and the file differ\n"
        "  2  usage: the command line is wrong\n"
        "  3  link failure: the port cannot be opened, the drive does not answer, doctor found\n"
        "     a problem, or wave capture saw no trigger in time\n"
        "  4  drive refusal: the drive answered with an error reply\n"
        "  5  file error: a file cannot be read, is not the right kind, or cannot be written\n"
        "Errors are one line on stderr; no file is left half-written.\n");
    return h;
}

int usage(const QString& message) {
    std::fprintf(stderr, "velora-cli: %s Run velora-cli --help for the commands.\n",
                 qUtf8Printable(message));
    return toInt(ExitCode::Usage);
}

const CliCommand* findCommand(const QList<CliCommand>& commands, const QStringList& words) {
    const CliCommand* best = nullptr;
    for (const CliCommand& c : commands) {
        if (words.mid(0, c.words.size()) == c.words &&
            (!best || c.words.size() > best->words.size())) {
            best = &c;
        }
    }
    return best;
}

// Every option of every command on one parser; returns the names of the link options, which
// every command takes.
QSet<QString> addOptions(QCommandLineParser& parser, const QList<CliCommand>& commands) {
    QSet<QString> globalNames;
    for (const QCommandLineOption& o : linkOptions()) {
        parser.addOption(o);
        for (const QString& name : o.names())
            globalNames.insert(name);
    }
    QSet<QString> added;
    for (const CliCommand& c : commands) {
        for (const QCommandLineOption& o : c.options) {
            // A name two commands share (-o, --ram) is added once.
            if (!added.contains(o.names().constFirst()))
                parser.addOption(o);
            for (const QString& name : o.names())
                added.insert(name);
        }
    }
    return globalNames;
}

// Why the command line does not fit the command (its argument count, an option it does not
// take); empty when it fits.
QString misfit(const QCommandLineParser& parser, const CliCommand& command, const QStringList& rest,
               QSet<QString> allowed) {
    if (rest.size() != command.argumentCount) {
        return QStringLiteral("\"%1\" is used as: %2.")
            .arg(command.words.join(QLatin1Char(' ')), command.synopsis);
    }
    for (const QCommandLineOption& o : command.options) {
        for (const QString& name : o.names())
            allowed.insert(name);
    }
    for (const QString& name : parser.optionNames()) {
        if (!allowed.contains(name)) {
            return QStringLiteral("\"%1\" takes no option --%2.")
                .arg(command.words.join(QLatin1Char(' ')), name);
        }
    }
    return {};
}

// The link the options ask for; error names what is wrong when an option's value is not one
// the link takes.
LinkChoice linkChoice(const QCommandLineParser& parser, QString& error) {
    LinkChoice choice;
    choice.port = parser.value(Port);
    choice.usb = parser.isSet(Usb);
    if (parser.isSet(Axis)) {
        bool ok = false;
        const int axis = parser.value(Axis).toInt(&ok);
        if (!ok || axis < 0 || axis > 15)
            error = QStringLiteral("--axis takes a number 0-15.");
        choice.axis = axis;
    }
    if (parser.isSet(Baud)) {
        static const QStringList rates{QStringLiteral("9600"), QStringLiteral("19200"),
                                       QStringLiteral("38400"), QStringLiteral("57600"),
                                       QStringLiteral("115200")};
        const QString baud = parser.value(Baud);
        const qsizetype index = rates.indexOf(baud);
        if (error.isEmpty() && (index < 0 || (choice.usb && index > 2))) {
            error = choice.usb ? QStringLiteral("--baud with --usb is 9600, 19200 or 38400.")
                               : QStringLiteral("--baud is 9600, 19200, 38400, 57600 or 115200.");
        }
        choice.baud = baud;
    }
    return choice;
}

}  // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("velora-cli"));
    const QList<CliCommand> commands = cliCommands();

    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QSet<QString> globalNames = addOptions(parser, commands);
    if (!parser.parse(QCoreApplication::arguments()))
        return usage(parser.errorText() + QLatin1Char('.'));
    if (parser.isSet(Help) || parser.positionalArguments().isEmpty()) {
        std::fputs(qUtf8Printable(helpText(commands)), parser.isSet(Help) ? stdout : stderr);
        return toInt(parser.isSet(Help) ? ExitCode::Ok : ExitCode::Usage);
    }

    const QStringList words = parser.positionalArguments();
    const CliCommand* command = findCommand(commands, words);
    if (!command)
        return usage(QStringLiteral("Unknown command \"%1\".").arg(words.join(QLatin1Char(' '))));
    const QStringList rest = words.mid(command->words.size());
    if (const QString why = misfit(parser, *command, rest, globalNames); !why.isEmpty())
        return usage(why);
    QString error;
    const LinkChoice choice = linkChoice(parser, error);
    if (!error.isEmpty())
        return usage(error);

    CliSession session(choice);
    if (parser.isSet(Trace))
        session.traceTo(parser.value(Trace));
    const ExitCode code = command->run(session, CliArgs{parser, rest});
    const ExitCode traced = session.writeTrace();
    return toInt(code != ExitCode::Ok ? code : traced);
}
