#include "shared/Global.h"
#include "app/MainWindow.h"
#include "link/LinkEngine.h"
#include "sim/SimulatedLine.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>

#include <memory>

using velora::BackEnd;

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Velora"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Set up, command and watch Orvix servo drives over a serial line."));
    parser.addHelpOption();
    const QCommandLineOption portOption(
        QStringLiteral("port"),
        QStringLiteral("Open DEVICE instead of the configured port number."),
        QStringLiteral("DEVICE"));
    const QCommandLineOption simulateOption(
        QStringLiteral("simulate"),
        QStringLiteral("Start a simulated Orvix drive (axis 0, 9600 baud) and talk to it."));
    parser.addOption(portOption);
    parser.addOption(simulateOption);
    parser.process(app);

    velora::Global global;
    velora::MainWindow window(global);

    std::unique_ptr<velora::sim::SimulatedLine> simulated;
    QString device = parser.value(portOption);
    if (parser.isSet(simulateOption)) {
        simulated = std::make_unique<velora::sim::SimulatedLine>(velora::sim::SimOptions{});
        if (!simulated->open()) {
            QMessageBox::critical(nullptr, QStringLiteral("Velora"),
                                  QStringLiteral("The simulated drive could not start:\n%1")
                                      .arg(simulated->errorString()));
            return 1;
        }
        device = simulated->devicePath();
        window.setSimulatedDevice(device);
    }

    velora::LinkEngine link(global.Link, window);
    const BackEnd backEnd = global.Link.UsbMode ? BackEnd::UsbSerial : BackEnd::Rs232;
    link.setTransport(velora::createTransport(backEnd, global.Link));
    link.setDeviceOverride(device);
    window.show();
    link.start(global.RetryTime);
    return QApplication::exec();
}
