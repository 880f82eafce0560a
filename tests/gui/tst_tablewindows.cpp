#include "gui/comtable/ComTblWindow.h"
#include "gui/pointtable/PointTblWindow.h"

#include "DriveRig.h"
#include "core/link/TransportFactory.h"
#include "sim/SimulatedLine.h"

#include <QFileDialog>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QtTest>

#include <functional>

using namespace velora;
using namespace Qt::StringLiterals;
using namespace velora::test;

namespace {

const char* const PointBoxes[] = {"TextPosTor",   "TextAbsInc",   "TextPosition", "TextVelocity",
                                  "TextAccConst", "TextWaitTime", "TextNextStart"};

QRgb baseOf(const QWidget* box) {
    return box->palette().color(QPalette::Base).rgb() & 0xFFFFFF;
}

// The drive's point in the order of the window's columns.
QList<qint32> columns(const sim::PointEntry& e) {
    return {e.posTor(),   e.incremental() ? 1 : 0, e.position, e.velocity, e.accConst, e.waitTime,
            e.nextStart()};
}

// Answers the next file dialog with `path`, as a user picking it would.
void answerFileDialog(const QString& path) {
    auto* poll = new QTimer;
    QObject::connect(poll, &QTimer::timeout, poll, [poll, path] {
        if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
            dialog->selectFile(path);
            static_cast<QDialog*>(dialog)->accept();  // public in the base
            poll->deleteLater();
        }
    });
    poll->start(5);
}

}  // namespace

// Both table windows end to end: against the simulated drive, through their files, joined.
class TestTableWindows : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void pointTableReadsEditsWritesAndKeepsFiles() {
        sim::SimOptions options;
        options.fast = true;
        sim::SimulatedLine line(options);
        QVERIFY2(line.open(), qPrintable(line.errorString()));
        sim::DriveMemory& drive = line.bus().drive(0)->model().memory();
        for (int p = 0; p < 64; ++p)
            QVERIFY(drive.writePoint(p, {p % 64, p * 1000 - 7, p % 10, (p + 1) % 10, p * 3}, true));
        DriveRig rig(line);
        auto* window = rig.find<PointTblWindow>(u"PointTbl"_s);
        qobject_cast<QMdiSubWindow*>(window->parentWidget())->showNormal();  // minimised at start
        const auto box = [&rig, window](int column, int p) {
            return rig.find<QLineEdit>(u"%1(%2)"_s.arg(QLatin1String(PointBoxes[column])).arg(p),
                                       window);
        };
        QCOMPARE(box(2, 5)->accessibleName(), u"Point5 Position/ MoveCount"_s);

        rig.click(window, u"Command(3)"_s);
        QVERIFY(rig.runUntil([&] { return box(2, 63)->text() == u"62993"_s; }));
        for (int p = 0; p < 64; ++p) {
            QList<qint32> shown;
            for (int c = 0; c < 7; ++c)
                shown << box(c, p)->text().toInt();
            QCOMPARE(shown, columns(drive.ram().points[static_cast<std::size_t>(p)]));
        }
        QVERIFY(rig.find<QPushButton>(u"Command(2)"_s, window)->isEnabled());

        // Two edits, RAM only: exactly two write commands.
        auto* tabs = rig.find<QTabWidget>(u"SSTabPntTbl"_s, window);
        rig.type(box(2, 3), u"-1234"_s);
        QCOMPARE(baseOf(box(0, 3)), 0xFF8080u);
        QCOMPARE(baseOf(box(0, 2)), 0xFFFFFFu);
        QCOMPARE(baseOf(box(0, 1)), 0xFFC0FFu);
        rig.key(box(2, 7), Qt::Key_Down);  // on to the next tab
        QCOMPARE(tabs->currentIndex(), 1);
        QCOMPARE(QApplication::focusWidget(), box(2, 8));
        tabs->setCurrentIndex(5);
        rig.type(box(5, 40), u"70000"_s);
        QCOMPARE(box(5, 40)->text(), u"65535"_s);
        QVERIFY(tabs->tabText(0).endsWith(u"\u25CF"_s) && !tabs->tabText(1).endsWith(u"\u25CF"_s));
        QVERIFY(tabs->tabBar()->rect().contains(tabs->tabBar()->tabRect(7)));  // still in sight
        QCOMPARE(rig.find<QLabel>(u"LabelMarked"_s, window)->text(),
                 en(Text::TablePointsMarkedWriting) + u"2"_s);
        rig.link().NonVolatileWrite[1] = false;
        rig.click(window, u"Command(2)"_s);
        QVERIFY(rig.runUntil([&] { return rig.global.Points.changedCount() == 0; }));
        QCOMPARE(rig.receivedWith(u"T[TW]"_s).size(), 2);
        QCOMPARE(drive.ram().points[3].position, -1234);
        QCOMPARE(drive.ram().points[40].waitTime, 65535);
        QCOMPARE(baseOf(box(0, 3)), 0xFFC0FFu);

        // Saved, the drive changed behind our back, loaded again: all 64 go back.
        const QString path = rig.dir.filePath(u"table.tbl"_s);
        answerFileDialog(path);
        rig.click(window, u"Command(0)"_s);
        QVERIFY(QFileInfo(path).size() > 449 * 3);
        for (int p = 0; p < 64; ++p)
            QVERIFY(drive.writePoint(p, {}, false));
        answerFileDialog(path);
        rig.click(window, u"Command(1)"_s);
        QCOMPARE(baseOf(box(0, 10)), 0xFFC0C0u);
        const auto* marked = rig.find<QLabel>(u"LabelMarked"_s, window);
        QCOMPARE(marked->text(), en(Text::TablePointsMarkedWriting) + u"64"_s);
        // The count line keeps one size whatever the count; the longest count still fits.
        QVERIFY(marked->width() >= marked->fontMetrics().horizontalAdvance(marked->text()));
        QCOMPARE(window->windowTitle(), en(Text::CaptionPointTable) + u" - table.tbl"_s);
        rig.received.clear();
        rig.click(window, u"Command(2)"_s);
        QVERIFY(rig.runUntil([&] { return !rig.link().run().PointTransferActive; }));
        QCOMPARE(rig.receivedWith(u"T[TW]"_s).size(), 64);
        QCOMPARE(drive.ram().points[3].position, -1234);
        QCOMPARE(drive.ram().points[63].position, 62993);

        // A file of another kind is refused and changes nothing.
        QFile other(rig.dir.filePath(u"other.tbl"_s));
        QVERIFY(other.open(QIODevice::WriteOnly) &&
                other.write("Orvix-Servo v/a/t commands file\r\n"));
        other.close();
        answerFileDialog(other.fileName());
        rig.click(window, u"Command(1)"_s);
        QCOMPARE(rig.messages.value(0).text, en(Text::MsgIdentificationError1734));
        QCOMPARE(box(2, 3)->text(), u"-1234"_s);
    }

    void commandTableReadsEditsWritesAndKeepsFiles() {
        sim::SimOptions options;
        options.fast = true;
        sim::SimulatedLine line(options);
        QVERIFY2(line.open(), qPrintable(line.errorString()));
        sim::DriveMemory& drive = line.bus().drive(0)->model().memory();
        for (int i = 0; i < 10; ++i) {
            QVERIFY(drive.writeVelocity(i, 100 + i, true));
            QVERIFY(drive.writeAtc(i, 200 + i, true));
        }
        for (int i = 1; i < 8; ++i)
            QVERIFY(drive.writeTorque(i, 300 + i, true));
        DriveRig rig(line);
        auto* window = rig.find<ComTblWindow>(u"ComTbl"_s);
        const auto box = [&rig, window](int k) {
            return rig.find<QLineEdit>(u"TextCom(%1)"_s.arg(k), window);
        };
        QVERIFY(!box(20));
        QCOMPARE(box(13)->accessibleName(), u"No.3 ATC  (ms)"_s);

        rig.click(window, u"Command(3)"_s);
        QVERIFY(rig.runUntil([&] { return box(27)->text() == u"307"_s; }));
        for (int i = 0; i < 10; ++i) {
            QCOMPARE(box(i)->text(), QString::number(drive.ram().velocity[std::size_t(i)]));
            QCOMPARE(box(10 + i)->text(), QString::number(drive.ram().atc[std::size_t(i)]));
            if (i > 0 && i < 8)
                QCOMPARE(box(20 + i)->text(), QString::number(drive.ram().torque[std::size_t(i)]));
        }

        rig.type(box(3), u"1500"_s);
        rig.key(box(9), Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), box(10));
        rig.type(box(25), u"20000"_s);
        QCOMPARE(box(25)->text(), u"15000"_s);
        QCOMPARE(baseOf(box(25)), 0xFF8080u);
        QCOMPARE(baseOf(box(24)), 0xFFFFFFu);
        QCOMPARE(rig.find<QLabel>(u"LabelMarked"_s, window)->text(),
                 en(Text::TableCellsMarkedWriting) + u"2"_s);
        rig.click(window, u"Command(2)"_s);
        QVERIFY(rig.runUntil([&] { return !rig.link().run().ComTableTransferActive; }));
        QCOMPARE(rig.receivedWith(u"[VCQ][WT]"_s), (QStringList{u"0VW3;5DC"_s, u"0QW5;3A98"_s}));
        QCOMPARE(drive.ram().velocity[3], 1500);
        QCOMPARE(drive.ram().torque[5], 15000);

        const QString path = rig.dir.filePath(u"table.sct"_s);
        answerFileDialog(path);
        rig.click(window, u"Command(0)"_s);
        QVERIFY(drive.writeVelocity(3, 0, false));
        answerFileDialog(path);
        rig.click(window, u"Command(1)"_s);
        QCOMPARE(baseOf(box(3)), 0xFFC0C0u);
        QCOMPARE(window->windowTitle(), en(Text::CaptionCommandTable) + u" - table.sct"_s);
        rig.received.clear();
        rig.click(window, u"Command(2)"_s);
        QVERIFY(rig.runUntil([&] { return !rig.link().run().ComTableTransferActive; }));
        QCOMPARE(rig.receivedWith(u"[VCQ][WT]"_s).size(), 27);
        QCOMPARE(drive.ram().velocity[3], 1500);
    }

    void joinedWindowsStayDockedAndResizingSeparates() {
        ShellRig rig;
        rig.start();
        auto* point = rig.find<PointTblWindow>(u"PointTbl"_s);
        auto* com = rig.find<ComTblWindow>(u"ComTbl"_s);
        auto* pointFrame = qobject_cast<QMdiSubWindow*>(point->parentWidget());
        auto* comFrame = qobject_cast<QMdiSubWindow*>(com->parentWidget());
        // A small screen starts them minimised.
        pointFrame->showNormal();
        comFrame->showNormal();
        auto* join = rig.find<QPushButton>(u"CmdJoin"_s, point);
        QCOMPARE(join->text(), en(Text::PointTableJoinComTable));
        QTest::mouseClick(join, Qt::LeftButton);
        QCOMPARE(join->text(), en(Text::PointTableSeparateTable));
        const auto docked = [&] {
            return comFrame->x() == pointFrame->x() + pointFrame->width() &&
                   comFrame->geometry().bottom() == pointFrame->geometry().bottom();
        };

        pointFrame->mdiArea()->setActiveSubWindow(pointFrame);
        pointFrame->move(20, 40);
        QTRY_VERIFY_WITH_TIMEOUT(docked(), 1000);
        comFrame->mdiArea()->setActiveSubWindow(comFrame);
        comFrame->move(700, 100);
        QTRY_VERIFY_WITH_TIMEOUT(docked() && pointFrame->x() < 700, 1000);

        rig.find<QAction>(u"mnuSystemLang(1)"_s)->trigger();
        QCOMPARE(join->text(), ja(Text::PointTableSeparateTable));
        QCOMPARE(rig.find<QLabel>(u"LabelTitle(11)"_s, point)->text(),
                 ja(Text::PointTablePositionMoveCount));
        QCOMPARE(rig.find<QLabel>(u"Label4"_s, com)->text(), ja(Text::ComTableATCMs));
        pointFrame->resize(pointFrame->size() + QSize(10, 0));
        QVERIFY(!rig.global.TablesJoined);
        QCOMPARE(join->text(), ja(Text::PointTableJoinComTable));
    }
};

QTEST_MAIN(TestTableWindows)
#include "core/shared/TextId.h"
#include "tst_tablewindows.moc"
