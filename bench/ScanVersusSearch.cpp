#include "ScanVersusSearch.h"

#include "core/connect/PortSearch.h"
#include "core/link/LinkEngine.h"
#include "core/link/TransportFactory.h"
#include "core/params/ParamTransfer.h"
#include "core/shared/Global.h"
#include "sim/SimulatedLine.h"
#include "support/FakeLinkUi.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

namespace velora::bench {

namespace {

constexpr int kAxis = 14;
constexpr int kBaudIndex = 4;  // 115200
constexpr int kTimeoutMs = 180000;

// A paced line with its one drive moved to axis 14 at 115200 baud.
std::unique_ptr<sim::SimulatedLine> lastSettingLine() {
    sim::SimOptions options;
    options.axes = {kAxis};
    auto line = std::make_unique<sim::SimulatedLine>(options);
    if (!line->open())
        qFatal("simulator: %s", qPrintable(line->errorString()));
    sim::Drive& drive = *line->bus().drive(kAxis);
    if (!drive.model().memory().writeParam(43, kBaudIndex, true) ||
        drive.model().reset() != sim::DriveModel::Refusal::None) {
        qFatal("the simulated drive did not take 115200 baud");
    }
    return line;
}

// The program's search, at the default polling period of 250 ms.
double portSearchSeconds() {
    const auto line = lastSettingLine();
    Global global;
    test::FakeLinkUi ui;
    LinkEngine engine(global.Link, ui);
    ParamTransfer params(engine, global.Params);
    global.Link.RealTimeMonitor = false;
    global.Link.Online = false;  // the polling timer runs; nothing is opened or polled yet
    engine.setDeviceOverride(line->devicePath());
    engine.start(250);
    global.Link.Online = true;
    PortSearch search(engine, createTransport);
    QObject::connect(&params, &ParamTransfer::portSearchSucceeded, [&] { search.found(); });
    QEventLoop loop;
    bool found = false;
    search.setEndHandler([&](PortSearch::Outcome outcome) {
        found = outcome == PortSearch::Outcome::Found;
        loop.quit();
    });
    QTimer::singleShot(kTimeoutMs, &loop, &QEventLoop::quit);
    QElapsedTimer timer;
    timer.start();
    search.start(false);  // RS-232C, as the line under test
    loop.exec();
    if (!found || search.SearchAxis() != kAxis)
        qFatal("the port search did not find axis 14");
    return timer.nsecsElapsed() / 1e9;
}

// velora-cli scan, the real program, listing every drive.
double cliScanSeconds() {
    const auto line = lastSettingLine();
    QTemporaryDir config;
    QProcess cli;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), config.path());
    cli.setProcessEnvironment(env);
    QEventLoop loop;
    QObject::connect(&cli, &QProcess::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(kTimeoutMs, &loop, &QEventLoop::quit);
    QElapsedTimer timer;
    timer.start();
    cli.start(QStringLiteral(VELORA_CLI),
              {QStringLiteral("--port"), line->devicePath(), QStringLiteral("scan")});
    loop.exec();
    const double seconds = timer.nsecsElapsed() / 1e9;
    const QByteArray out = cli.readAllStandardOutput();
    if (cli.exitCode() != 0 || out != "axis 14, 115200 baud, version 1.10\n")
        qFatal("velora-cli scan: %s", cli.readAllStandardError().constData());
    return seconds;
}

}  // namespace

void scanVersusSearch() {
    const double search = portSearchSeconds();
    const double scan = cliScanSeconds();
    std::printf(
        "| program's port search to axis 14 at 115200 baud (stops at the drive) | | %.2f s |\n",
        search);
    std::printf(
        "| `velora-cli scan`, every axis at every rate, same line | faster | %.2f s (%.1fx) |\n",
        scan, search / scan);
}

}  // namespace velora::bench
