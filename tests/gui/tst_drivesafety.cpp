#include "core/pointtable/PointFile.h"
#include "core/shared/ServoStatus.h"
#include "gui/app/CommSettings.h"
#include "gui/console/ComConsoleWindow.h"
#include "gui/link/InComDialog.h"
#include "gui/params/PrmTblWindow.h"
#include "gui/pointtable/PointTblWindow.h"
#include "gui/wave/HMonWindow.h"

#include "DriveRig.h"

#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QToolBar>
#include <QtTest>

using namespace velora;
using namespace Qt::StringLiterals;
using namespace velora::test;

namespace {

QRgb baseOf(const QWidget* box) {
    return box->palette().color(QPalette::Base).rgb() & 0xFFFFFF;
}

sim::SimOptions fastLine(QList<int> axes = {0}, int delayMs = 0) {
    sim::SimOptions options;
    options.fast = true;
    options.axes = std::move(axes);
    options.faults.delayMs = delayMs;
    return options;
}

// Half a second of the link going on: enough for anything that would still be sent.
void settle(DriveRig& rig) {
    for (int i = 0; i < 10; ++i) {
        rig.engine().tick();
        QTest::qWait(50);
    }
}

QMdiSubWindow* frameOf(QWidget* window) {
    return qobject_cast<QMdiSubWindow*>(window->parentWidget());
}

}  // namespace

// The main window on a line of simulated drives: data reaches only the drive it came from,
// edits are not dropped unasked, the stops stay within reach and a transfer can be left.
class TestDriveSafety : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void valuesGoOnlyToTheirDriveAndEditsAreNotDroppedUnasked() {
        sim::SimulatedLine line(fastLine({0, 3}));
        QVERIFY2(line.open(), qPrintable(line.errorString()));
        sim::DriveMemory& axis0 = line.bus().drive(0)->model().memory();
        sim::DriveMemory& axis3 = line.bus().drive(3)->model().memory();
        DriveRig rig(line);
        auto* prm = rig.find<PrmTblWindow>(u"PrmTbl"_s);
        const auto drive = [&line](int axis) {
            return en(Text::MsgAxis).arg(axis).arg(line.devicePath());
        };
        rig.click(prm, u"Command(3)"_s);
        QVERIFY(rig.runUntil([&] { return rig.global.Params.ParamsLoaded; }));
        QCOMPARE(rig.find<QLabel>(u"LabelDrive"_s, prm)->text(), en(Text::MsgDrive).arg(drive(0)));
        auto* box8 = rig.find<QLineEdit>(u"TxtPrm(8)"_s, prm);
        rig.type(box8, u"777"_s);

        // Turning to axis 3 with the edit unwritten asks first; No changes nothing.
        CommSettings* settings = rig.window->commSettings();
        rig.find<QAction>(u"mnuSystemItem(0)"_s)->trigger();
        rig.find<QLineEdit>(u"TextAxisNum"_s, settings)->setText(u"3"_s);
        auto* ok = rig.find<QPushButton>(u"Command(0)"_s, settings);
        QTest::mouseClick(ok, Qt::LeftButton);
        QCOMPARE(rig.messages.last().text,
                 en(Text::MsgNotWrittenDriveDiscard).arg(en(Text::Msg1Parameter)));
        QCOMPARE(rig.messages.last().defaultButton, QMessageBox::No);
        QVERIFY(settings->isVisible() && rig.global.Params.ParamChanged[8]);
        QCOMPARE(rig.link().AxisNumber, 0);
        rig.yesNoAnswer = QMessageBox::Yes;
        QTest::mouseClick(ok, Qt::LeftButton);
        QVERIFY(!settings->isVisible() && !rig.global.Params.ParamChanged[8]);
        QCOMPARE(rig.link().AxisNumber, 3);
        QCOMPARE(box8->text(), QString::number(axis0.param(8)));  // the edit is gone
        QCOMPARE(baseOf(box8), 0xFFFFFFu);

        // Axis 0's values go to axis 3 only when the user agrees.
        rig.yesNoAnswer = QMessageBox::No;
        rig.type(box8, u"778"_s);
        rig.click(prm, u"Command(2)"_s);
        QCOMPARE(rig.messages.last().text,
                 en(Text::MsgTheseValuesWereRead).arg(drive(0), drive(3)));
        QCOMPARE(rig.messages.last().defaultButton, QMessageBox::No);
        settle(rig);
        QVERIFY(rig.received.filter(u"PW"_s).isEmpty());
        rig.yesNoAnswer = QMessageBox::Yes;
        rig.click(prm, u"Command(2)"_s);
        QVERIFY(rig.runUntil([&] { return !rig.global.Params.ParamChanged[8]; }));
        QCOMPARE(rig.received.filter(u"PW"_s), QStringList{u"3PW8;30A"_s});
        QCOMPARE(axis3.param(8), 778);
        QVERIFY(axis0.param(8) != 778);

        // Quitting with an edit unwritten and the servo on asks both; No keeps the program.
        rig.yesNoAnswer = QMessageBox::No;
        rig.click(rig.find<ComConsoleWindow>(u"ComConsole"_s), u"CmdButton(2)"_s);
        QVERIFY(rig.runUntil([&] { return ServoStatus(rig.link().ServoStatus).servoOn(); }));
        rig.type(box8, u"779"_s);
        rig.messages.clear();
        rig.window->close();
        QCOMPARE(rig.messages.size(), 1);
        QCOMPARE(rig.messages[0].text,
                 en(Text::MsgNotWrittenDriveDiscard).arg(en(Text::Msg1Parameter)));
        rig.messages.clear();
        rig.window->messageBoxes().setAnswerer([&rig](const MessageBoxes::Message& m) {
            rig.messages.append(m);
            return m.title == en(Text::MsgUnwrittenChanges) ? QMessageBox::Yes : QMessageBox::No;
        });
        rig.window->close();
        QCOMPARE(rig.messages.value(1).text, en(Text::MsgServoAxisOnNQuit).arg(3));
        QVERIFY(!rig.window->isHidden());
    }

    void stopsStayWithinReachAndGoFirst() {
        sim::SimulatedLine line(fastLine());
        QVERIFY2(line.open(), qPrintable(line.errorString()));
        DriveRig rig(line);
        auto* strip = rig.find<QToolBar>(u"StopStrip"_s);
        auto* area = rig.find<QMdiArea>(u"MDIClient"_s);
        // Beside the area of the child windows, so that none of them can cover it.
        const QRect areaRect(area->mapTo(rig.window.get(), QPoint()), area->size());
        QVERIFY(strip->isVisible() && !strip->geometry().intersects(areaRect));
        auto* jogOff = rig.find<QAction>(u"CmdStop(1)"_s);
        QCOMPARE(jogOff->text(), en(Text::MsgJogOff) + u" (F7)"_s);

        auto* console = rig.find<ComConsoleWindow>(u"ComConsole"_s);
        rig.click(console, u"CmdButton(2)"_s);
        QVERIFY(rig.runUntil([&] { return ServoStatus(rig.link().ServoStatus).servoOn(); }));
        // A stop given while a jog still waits for its turn takes the jog's place.
        rig.click(console, u"CmdButton(23)"_s);
        QCOMPARE(rig.link().run().QueuedCommand, u"0PJ"_s);
        QVERIFY(jogOff->isEnabled());
        jogOff->trigger();
        QCOMPARE(rig.link().run().QueuedCommand, u"0JF"_s);
        QVERIFY(rig.runUntil([&] { return rig.received.contains(u"0JF"_s); }));
        QVERIFY(!rig.received.contains(u"0PJ"_s));

        // A trigger does not bring the wave monitor over the window in use.
        auto* hmon = rig.find<HMonWindow>(u"HMon"_s);
        area->setActiveSubWindow(frameOf(console));
        emit rig.window->waveCapture().triggered();
        QCOMPARE(area->activeSubWindow(), frameOf(console));

        // The key works from any window: here from the wave monitor, the console behind it.
        rig.click(console, u"CmdButton(23)"_s);
        QVERIFY(rig.runUntil([&] { return rig.received.contains(u"0PJ"_s); }));
        QVERIFY(rig.runUntil([&] { return jogOff->isEnabled(); }));
        area->setActiveSubWindow(frameOf(hmon));
        rig.received.clear();
        QApplication::setActiveWindow(rig.window.get());
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : hmon,
                        Qt::Key_F7);
        QVERIFY(rig.runUntil([&] { return rig.received.contains(u"0JF"_s); }));
    }

    void busyDialogTellsHowFarAndCancelKeepsWhatIsLeft() {
        sim::SimulatedLine line(fastLine({0}, 30));
        QVERIFY2(line.open(), qPrintable(line.errorString()));
        DriveRig rig(line);
        auto* points = rig.find<PointTblWindow>(u"PointTbl"_s);
        const QString path = rig.dir.filePath(u"t.tbl"_s);
        QVERIFY(points->pointFile().WritePointFile(path));
        QCOMPARE(points->pointFile().ReadPointFile(path), PointFile::ReadResult::Loaded);
        rig.click(points, u"Command(2)"_s);
        auto* busy = rig.find<InComDialog>(u"InCOMDialog"_s);
        QVERIFY(rig.runUntil([&] { return rig.global.Points.changedCount() <= 61; }));
        QVERIFY(busy->isVisible());
        QString pattern = QRegularExpression::escape(en(Text::PointTableWritingPoint));
        pattern.replace(u"\\%1"_s, u"\\d+"_s)
            .replace(u"\\%2"_s,
                     QRegularExpression::escape(en(Text::MsgAxis).arg(0).arg(line.devicePath())))
            .replace(u"\\%3"_s, u"\\d+/64"_s);
        const QRegularExpression progress(u"^"_s + pattern + u"$"_s);
        auto* activity = rig.find<QLabel>(u"LabelActivity"_s, busy);
        QTRY_VERIFY2(progress.match(activity->text()).hasMatch(), qPrintable(activity->text()));

        QTest::mouseClick(rig.find<QPushButton>(u"CmdCancel"_s, busy), Qt::LeftButton);
        QVERIFY(!busy->isVisible() && !rig.link().run().PointTransferActive);
        const int left = rig.global.Points.changedCount();
        QVERIFY(left > 0 && left < 64);
        QVERIFY(rig.runUntil(
            [&] { return rig.find<QPushButton>(u"Command(3)"_s, points)->isEnabled(); }));
        rig.received.clear();
        settle(rig);
        QVERIFY(rig.received.filter(u"TW"_s).size() <= 1);
        QCOMPARE(rig.global.Points.changedCount(), left);
    }
};

QTEST_MAIN(TestDriveSafety)
#include "core/shared/TextId.h"
#include "tst_drivesafety.moc"
