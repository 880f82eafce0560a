#include "core/app/DriveSession.h"
#include "core/connect/CheckCommand.h"
#include "core/shared/Global.h"
#include "gui/app/AppLinkUi.h"
#include "gui/app/MDIParent.h"
#include "gui/options/VersionDialog.h"
#include "gui/shared/MessageBoxes.h"
#include "sim/SimulatedLine.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QMessageBox>
#include <QTextStream>

#include <cstring>
#include <memory>

namespace {

// The connection check needs no display: it runs before any window exists, in a plain
// application object, and prints its findings.
int runCheck(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Velora"));
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption check(QStringLiteral("check"),
                                   QStringLiteral("Check the connection and print the findings."));
    const QCommandLineOption port(QStringLiteral("port"), QStringLiteral("Check DEVICE."),
                                  QStringLiteral("DEVICE"));
    const QCommandLineOption search(
        QStringLiteral("search"),
        QStringLiteral("When no drive answers, try every axis and rate."));
    parser.addOption(check);
    parser.addOption(port);
    parser.addOption(search);
    parser.process(app);
    QTextStream out(stdout);
    return velora::runCheckCommand(velora::SettingsStore(), parser.value(port),
                                   parser.isSet(search), out);
}

struct CommandLine {
    QCommandLineParser parser;
    QCommandLineOption port{QStringLiteral("port"),
                            QStringLiteral("Open DEVICE instead of the configured port number."),
                            QStringLiteral("DEVICE")};
    QCommandLineOption simulate{
        QStringLiteral("simulate"),
        QStringLiteral("Start a simulated Orvix drive (axis 0, 9600 baud) and talk to it.")};

    CommandLine() {
        parser.setApplicationDescription(
            QStringLiteral("Set up, command and watch Orvix servo drives over a serial line."));
        parser.addHelpOption();
        parser.addVersionOption();
        parser.addOption(port);
        parser.addOption(simulate);
        // Listed for --help; handled before the windows start.
        parser.addOption(QCommandLineOption(
            QStringLiteral("check"),
            QStringLiteral("Check the connection (device, rights, other programs, the drive) and "
                           "print one finding a line with its fix.")));
    }
};

void nameApplication() {
    QCoreApplication::setApplicationName(QStringLiteral("Velora"));
    QCoreApplication::setApplicationVersion(
        velora::VersionDialog::formatVersion(velora::VersionDialog::SoftwareVersion));
}

// Help and version print text only: they are answered before a window system is needed, so
// they work over ssh or in a script without a display.
bool asksForTextOnly(int argc, char* argv[]) {
    for (int i = 1; i < argc; ++i) {
        for (const char* option : {"-h", "--help", "-?", "--help-all", "-v", "--version"}) {
            if (std::strcmp(argv[i], option) == 0)
                return true;
        }
    }
    return false;
}

}  // namespace

int main(int argc, char* argv[]) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--check") == 0)
            return runCheck(argc, argv);
    }
    if (asksForTextOnly(argc, argv)) {
        const QCoreApplication core(argc, argv);
        nameApplication();
        CommandLine commandLine;
        commandLine.parser.process(core);  // prints and exits
    }

    QApplication app(argc, argv);
    nameApplication();
    CommandLine commandLine;
    commandLine.parser.process(app);

    velora::ShellSetup setup;
    setup.deviceOverride = commandLine.parser.value(commandLine.port);
    // Declared before the main window, so that the drive is still there while the link closes.
    std::unique_ptr<velora::sim::SimulatedLine> simulated;
    if (commandLine.parser.isSet(commandLine.simulate)) {
        simulated = std::make_unique<velora::sim::SimulatedLine>(velora::sim::SimOptions{});
        if (!simulated->open()) {
            QMessageBox::critical(nullptr, QStringLiteral("Velora"),
                                  QStringLiteral("The simulated drive could not start:\n%1")
                                      .arg(simulated->errorString()));
            return 1;
        }
        setup.deviceOverride = simulated->devicePath();
        setup.simulatedDevice = simulated->devicePath();
    }

    // The drive session outlives the windows built over it.
    velora::Global global;
    velora::MessageBoxes boxes;
    velora::AppLinkUi linkUi(boxes);
    velora::DriveSession session(global, linkUi, std::move(setup));
    velora::MDIParent window(session, linkUi);
    window.show();
    window.startUp();
    return QApplication::exec();
}
