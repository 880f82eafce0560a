#include "sim/CommandLine.h"
#include "sim/SimulatedLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTextStream>

#include <sys/signalfd.h>
#include <csignal>
#include <cstdio>

int main(int argc, char* argv[]) {
    // Ctrl-C and kill end the event loop like a normal exit, so the line's temporary name goes.
    sigset_t stop{};
    sigemptyset(&stop);
    sigaddset(&stop, SIGINT);
    sigaddset(&stop, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &stop, nullptr);
    QCoreApplication app(argc, argv);
    QSocketNotifier stopped(signalfd(-1, &stop, SFD_CLOEXEC), QSocketNotifier::Read);
    QObject::connect(&stopped, &QSocketNotifier::activated, &app, &QCoreApplication::quit);
    QCoreApplication::setApplicationName(QStringLiteral("velora-sim"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Simulates a line of Orvix servo drives for Velora. Without --device it creates a "
        "pseudo-terminal and prints the device path to open as the first line of output."));
    parser.addHelpOption();
    velora::sim::CommandLine::addOptions(parser);
    const QCommandLineOption verbose(QStringLiteral("verbose"),
                                     QStringLiteral("Log every command and reply to stderr."));
    parser.addOption(verbose);
    parser.process(app);

    QTextStream err(stderr);
    QString error;
    const std::optional<velora::sim::SimOptions> options =
        velora::sim::CommandLine::options(parser, &error);
    if (!options) {
        err << "velora-sim: " << error << Qt::endl;
        return 2;
    }

    velora::sim::SimulatedLine line(*options);
    if (!line.open()) {
        err << "velora-sim: " << line.errorString() << Qt::endl;
        return 1;
    }
    if (parser.isSet(verbose)) {
        QObject::connect(&line, &velora::sim::SimulatedLine::commandReceived, &app,
                         [&err](const QString& text) { err << "<- " << text << Qt::endl; });
        QObject::connect(&line, &velora::sim::SimulatedLine::replySent, &app,
                         [&err](const QString& text) { err << "-> " << text << Qt::endl; });
    }
    // The path first, alone on its line, so a script can read it and open the port.
    std::printf("%s\n", line.devicePath().toLocal8Bit().constData());
    std::fflush(stdout);
    return QCoreApplication::exec();
}
