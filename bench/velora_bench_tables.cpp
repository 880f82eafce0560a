// The table transfers against the paced simulator, through the real transfer handlers and the
// point table window they refresh, and the cost of editing every box of that window.
// Run by hand: build/bench/velora-bench-tables. Prints rows for the README's Performance
// section.

#include "LineTime.h"
#include "app/TransportFactory.h"
#include "link/LinkEngine.h"
#include "pointtable/PointTblWindow.h"
#include "pointtable/PointTransfer.h"
#include "shared/Global.h"
#include "sim/SimulatedLine.h"
#include "support/FakeLinkUi.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFocusEvent>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <vector>

using namespace velora;
using bench::framed;
using bench::kBauds;
using bench::kBitsPerCharacter;

namespace {

// Velora with its point table window and a paced simulated drive at one baud rate, counting
// every character both ways.
struct PacedTables {
    explicit PacedTables(int baudIndex) : baud(kBauds[baudIndex]) {
        sim::SimOptions options;  // paced, one drive at axis 0
        line = std::make_unique<sim::SimulatedLine>(options);
        if (!line->open())
            qFatal("simulator: %s", qPrintable(line->errorString()));
        QObject::connect(line.get(), &sim::SimulatedLine::commandReceived,
                         [this](const QString& text) { characters += framed(text); });
        QObject::connect(line.get(), &sim::SimulatedLine::replySent,
                         [this](const QString& text) { characters += framed(text); });
        global.Link.RealTimeMonitor = false;
        global.Link.NonVolatileWrite[1] = false;
        engine.setTransport(createTransport(BackEnd::Rs232, global.Link));
        engine.setDeviceOverride(line->devicePath());
        engine.start(250);
        // The drive answers at once (reply wait 0) and moves to the rate under test.
        send(QStringLiteral("0PW2C;0"));
        send(QStringLiteral("0PW2B;%1").arg(baudIndex));
        engine.SendCommand(QStringLiteral("0RT"));
        QTest::qWait(50);
        global.Link.BaudRate = QString::number(baud);
        if (!engine.reopen().ok)
            qFatal("reopen failed");
        QTest::qWait(20);
        window.show();
    }

    void send(const QString& text) {
        engine.SendCommand(text);
        QTest::qWait(100);
    }

    // Starts a chain and waits for its end; returns the seconds it took and the line time of
    // every character it moved.
    std::pair<double, double> timeChain(const std::function<void()>& start) {
        QTest::qWait(50);
        characters = 0;
        QEventLoop loop;
        const auto done =
            QObject::connect(&transfer, &PointTransfer::transferFinished, &loop, &QEventLoop::quit);
        QTimer::singleShot(60000, &loop, &QEventLoop::quit);
        QElapsedTimer timer;
        timer.start();
        start();
        loop.exec();
        const double seconds = timer.nsecsElapsed() / 1e9;
        QObject::disconnect(done);
        QTest::qWait(50);  // the closing monitor poll is not part of the chain
        return {seconds, characters * kBitsPerCharacter / baud};
    }

    const int baud;
    int characters = 0;
    Global global;
    test::FakeLinkUi ui;
    std::unique_ptr<sim::SimulatedLine> line;
    LinkEngine engine{global.Link, ui, LinkEngine::Ticks::Manual};
    PointTransfer transfer{engine, global.Points};
    PointTblWindow window{global, engine, transfer};
};

void pointReadAll(int baudIndex) {
    PacedTables link(baudIndex);
    const auto [seconds, lineSeconds] = link.timeChain([&link] { link.transfer.ReadAllPoints(); });
    printf("| \"ta\" read-all at %6d baud, time / line time | <= 1.03 | %.3f s / %.3f s = %.3f |\n",
           link.baud, seconds, lineSeconds, seconds / lineSeconds);
}

void pointWriteChain(int baudIndex) {
    PacedTables link(baudIndex);
    for (int p = 0; p < PointTables::Count; ++p) {
        PointEntry& e = link.global.Points.PointTable[static_cast<std::size_t>(p)];
        e = {static_cast<quint8>(p % 8),
             static_cast<quint8>(p % 2),
             -1000 * p,
             static_cast<quint8>(p % 10),
             static_cast<quint8>(p % 10),
             10 * p,
             static_cast<quint8>(p % 4),
             0};
        link.global.Points.PointChanged[static_cast<std::size_t>(p)] = true;
    }
    const auto [seconds, lineSeconds] =
        link.timeChain([&link] { link.transfer.WriteChangedPoints(); });
    printf(
        "| 64-point write chain at %6d baud, time / line time | <= 1.03 | %.3f s / %.3f s = "
        "%.3f |\n",
        link.baud, seconds, lineSeconds, seconds / lineSeconds);
}

// Every one of the 448 boxes edited as if typed and left, then the window painted.
void editAllBoxes() {
    Global global;
    test::FakeLinkUi ui;
    LinkEngine engine(global.Link, ui, LinkEngine::Ticks::Manual);
    PointTransfer transfer(engine, global.Points);
    PointTblWindow window(global, engine, transfer);
    window.resize(560, 400);
    window.show();
    QTest::qWait(100);
    const QList<QLineEdit*> boxes = window.findChildren<QLineEdit*>();
    std::vector<double> runs;
    for (int run = 0; run < 7; ++run) {
        QElapsedTimer timer;
        timer.start();
        for (QLineEdit* box : boxes) {
            box->setText(QString::number(run % 2 + 1));
            QFocusEvent leave(QEvent::FocusOut, Qt::TabFocusReason);
            QCoreApplication::sendEvent(box, &leave);
        }
        window.repaint();
        QCoreApplication::processEvents();  // layout requests the edits posted
        window.repaint();
        runs.push_back(timer.nsecsElapsed() / 1e6);
    }
    std::sort(runs.begin(), runs.end());
    printf(
        "| editing all %lld point table boxes and repainting | < 50 ms | median %.1f ms, worst "
        "%.1f ms |\n",
        static_cast<long long>(boxes.size()), runs[runs.size() / 2], runs.back());
}

}  // namespace

int main(int argc, char* argv[]) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    printf("| measure | target | result |\n|---|---|---|\n");
    editAllBoxes();
    for (const int i : {0, 4}) {
        pointReadAll(i);
        pointWriteChain(i);
    }
    return 0;
}
