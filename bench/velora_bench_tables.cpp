// The point table transfers as a user gets them: the whole program, Read Servo and Write Servo
// pressed in the point table window, the RS-232C back-end on a pseudo-terminal, against the
// paced simulated drive on a thread of its own; and the cost of editing every box of that
// window. Run by hand: build/bench/velora-bench-tables. Prints rows for the README's
// Performance section.

#include "BenchApplication.h"
#include "DriveThread.h"
#include "LineTime.h"
#include "Percentiles.h"
#include "WholeProgram.h"

#include "core/link/FrameTrace.h"
#include "core/link/LinkEngine.h"
#include "core/pointtable/PointTransfer.h"
#include "core/shared/Global.h"
#include "gui/pointtable/PointTblWindow.h"
#include "support/FakeLinkUi.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFocusEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <numeric>
#include <vector>

using namespace velora;
using bench::kBauds;
using bench::kBitsPerCharacter;

namespace {

// Types text into a box and leaves it, as a person does.
void type(QLineEdit* box, const QString& text) {
    box->setText(text);
    QFocusEvent leave(QEvent::FocusOut, Qt::TabFocusReason);
    QCoreApplication::sendEvent(box, &leave);
}

struct ChainTime {
    double seconds = 0;
    // What every character that crossed the line meanwhile takes at 11 bits.
    double lineSeconds = 0;
};

// Presses button and waits for the chain it starts to finish. Counts the characters up to
// the chain's last reply: the monitor poll that follows is not part of it.
ChainTime timeChain(bench::DriveThread& drive, PointTransfer& transfer, QPushButton* button,
                    int baud) {
    // The line at rest: the poll that closed the last chain is answered (120 ms at 9600).
    bench::runFor(300);
    if (!button->isEnabled())
        qFatal("%s is not enabled", qPrintable(button->objectName()));
    ChainTime result;
    qint64 characters = -1;
    QElapsedTimer timer;
    QEventLoop loop;
    const auto done = QObject::connect(&transfer, &PointTransfer::transferFinished, &loop, [&] {
        result.seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
        characters = drive.characters;
        loop.quit();
    });
    QTimer::singleShot(60000, &loop, &QEventLoop::quit);
    drive.characters = 0;
    drive.recording = true;
    timer.start();
    button->click();
    loop.exec();
    drive.recording = false;
    QObject::disconnect(done);
    if (characters < 0)
        qFatal("the chain of %s did not finish", qPrintable(button->objectName()));
    result.lineSeconds = static_cast<double>(characters) * kBitsPerCharacter / baud;
    return result;
}

// Read Servo, then every point edited in the window and Write Servo, at one rate.
void pointChains(int baud) {
    bench::DriveThread drive(baud, 0, {QStringLiteral("TW"), QStringLiteral("TT")});
    drive.open();
    ChainTime read;
    ChainTime write;
    std::vector<qint64> handlingNs;
    {
        bench::WholeProgram program({baud, drive.device(), false});
        auto* window = program.window().findChild<PointTblWindow*>();
        PointTransfer& transfer = program.window().pointTransfer();
        const auto button = [window](int i) {
            return window->findChild<QPushButton*>(QStringLiteral("Command(%1)").arg(i));
        };
        read = timeChain(drive, transfer, button(3), baud);
        for (int p = 0; p < PointTables::Count; ++p) {
            type(window->findChild<QLineEdit*>(QStringLiteral("TextPosition(%1)").arg(p)),
                 QString::number(-1000 * p - 7));
        }
        // Each point after the first handed to the port, timed from the event that brought
        // the reply before it.
        FrameTrace trace;
        int sent = 0;
        trace.setListener([&](const FrameTrace::Entry& entry) {
            if (entry.direction == FrameTrace::Direction::Sent &&
                entry.text.mid(1, 2) == transfer.writeCode() && sent++ > 0)
                handlingNs.push_back(bench::BenchApplication::nowNs() -
                                     bench::BenchApplication::eventStartNs());
        });
        program.window().engine().setFrameTrace(&trace);
        write = timeChain(drive, transfer, button(2), baud);
        program.window().engine().setFrameTrace(nullptr);
        if (drive.replies != PointTables::Count)
            qFatal("%d points written, not %d", drive.replies.load(), PointTables::Count);
    }
    drive.quit();
    drive.wait();
    printf(
        "| Read Servo (\"ta\") at %6d baud, time / line time | <= 1.03 | %.3f s / %.3f s = "
        "**%.3f** |\n",
        baud, read.seconds, read.lineSeconds, read.seconds / read.lineSeconds);
    printf(
        "| Write Servo, 64 points at %6d baud, time / line time | <= 1.03 | %.3f s / %.3f s = "
        "**%.3f** |\n",
        baud, write.seconds, write.lineSeconds, write.seconds / write.lineSeconds);
    // Taking out the operating system's part of each turnaround (the pseudo-terminal's
    // hand-over and the waking of both sides) leaves what the program itself adds.
    const auto sum = [](const std::vector<qint64>& values) {
        return static_cast<double>(std::accumulate(values.begin(), values.end(), qint64{0})) / 1e9;
    };
    const double programSeconds = write.seconds - sum(drive.gapsNs) + sum(handlingNs);
    printf("| the same, the system's hand-over taken out of each turnaround | | %.3f |\n",
           programSeconds / write.lineSeconds);
    printf("| the same: turnaround on the line, median / mean / p99 | | %.3f / %.3f / %.2f ms |\n",
           bench::percentileMs(drive.gapsNs, 0.5), bench::meanMs(drive.gapsNs),
           bench::percentileMs(drive.gapsNs, 0.99));
    printf(
        "| the same: in the program, reply to next point written, median / p99 | | %.3f / %.3f "
        "ms |\n",
        bench::percentileMs(handlingNs, 0.5), bench::percentileMs(handlingNs, 0.99));
    fflush(stdout);
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
    bench::runFor(100);
    const QList<QLineEdit*> boxes = window.findChildren<QLineEdit*>();
    std::vector<qint64> runs;
    for (int run = 0; run < 7; ++run) {
        QElapsedTimer timer;
        timer.start();
        for (QLineEdit* box : boxes)
            type(box, QString::number(run % 2 + 1));
        window.repaint();
        QCoreApplication::processEvents();  // layout requests the edits posted
        window.repaint();
        runs.push_back(timer.nsecsElapsed());
    }
    printf(
        "| editing all %lld point table boxes and repainting | < 50 ms | median %.1f ms, worst "
        "%.1f ms |\n",
        static_cast<long long>(boxes.size()), bench::percentileMs(runs, 0.5),
        bench::percentileMs(runs, 1.0));
}

}  // namespace

int main(int argc, char* argv[]) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    bench::BenchApplication app(argc, argv);
    printf("| measure | target | result |\n|---|---|---|\n");
    editAllBoxes();
    for (const int baud : kBauds)
        pointChains(baud);
    return 0;
}
