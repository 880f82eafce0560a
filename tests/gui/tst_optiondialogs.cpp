#include "gui/options/OptionDialog.h"
#include "gui/options/VersionDialog.h"
#include "gui/shared/ChildWindow.h"

#include "ShellRig.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

using namespace velora;
using namespace Qt::StringLiterals;
using namespace velora::test;

namespace {

// The main window started with the monitor running; the options dialog open.
struct OptionsRig : ShellRig {
    OptionsRig() {
        start();
        engine().setMonitorRunning(true);
    }
    void open() {
        find<QAction>(u"mnuSystemItem(2)"_s)->trigger();
        dialog = find<OptionDialog>(u"OptionDialog"_s);
        QVERIFY(dialog->isVisible());
    }
    template <typename T = QWidget>
    [[nodiscard]] T* control(const QString& name) const {
        return find<T>(name, dialog);
    }
    [[nodiscard]] QComboBox* writeChoice(int k) const {
        return control<QComboBox>(u"CmbWriteSel(%1)"_s.arg(k));
    }
    void ok() { control<QPushButton>(u"CmdOkCancel(0)"_s)->click(); }

    OptionDialog* dialog = nullptr;
};

}  // namespace

// The options dialog's effects on the shared state and the polling timer, its version gating
// and sizes, and the version dialog.
class TestOptionDialogs : public QObject {
    Q_OBJECT
private slots:
    void retryTimeIsKeptWithinItsLimits_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<int>("period");
        // clang-format off
        QTest::newRow("too short")    << "50"   << "200"  << 200;
        QTest::newRow("too long")     << "5000" << "2000" << 2000;
        QTest::newRow("in range")     << "750"  << "750"  << 750;
        QTest::newRow("not a number") << "fast" << "250"  << 250;
        // clang-format on
    }
    void retryTimeIsKeptWithinItsLimits() {
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QFETCH(int, period);
        OptionsRig rig;
        rig.open();
        auto* box = rig.control<QLineEdit>(u"TxtRetryTime"_s);
        QCOMPARE(box->text(), u"250"_s);
        ShellRig::typeAndLeave(box, typed);
        QCOMPARE(box->text(), shown);
        rig.ok();
        QVERIFY(!rig.dialog->isVisible());
        QCOMPARE(rig.engine().pollIntervalMs(), period);
        QCOMPARE(rig.global.RetryTime, period);
        QVERIFY(rig.engine().timer1Active());
    }

    void ramOnlyWritesNeedVersion110_data() {
        QTest::addColumn<int>("version");
        QTest::addColumn<bool>("storedRamOnly");
        QTest::addColumn<int>("shownIndex");
        QTest::addColumn<bool>("nonVolatileAfterOk");
        QTest::newRow("no answer yet") << 0 << true << 1 << true;
        QTest::newRow("1.10") << 110 << true << 0 << false;
        QTest::newRow("1.10, memory write") << 110 << false << 1 << false;
    }
    void ramOnlyWritesNeedVersion110() {
        QFETCH(int, version);
        QFETCH(bool, storedRamOnly);
        QFETCH(int, shownIndex);
        QFETCH(bool, nonVolatileAfterOk);
        OptionsRig rig;
        rig.link().DriverVersion = version;
        rig.link().NonVolatileWrite[1] = !storedRamOnly;
        rig.open();
        QCOMPARE(rig.writeChoice(1)->currentIndex(), shownIndex);
        QCOMPARE(rig.writeChoice(1)->itemText(0), en(Text::OptionsRamOnly));
        rig.writeChoice(1)->setCurrentIndex(0);  // the user picks "RAM Only"
        rig.ok();
        QCOMPARE(rig.link().NonVolatileWrite[1], nonVolatileAfterOk);
        QVERIFY(rig.link().NonVolatileWrite[0]);
        QVERIFY(rig.link().NonVolatileWrite[2]);
    }

    void monitorOffUnlocksTheWindows() {
        OptionsRig rig;
        QVERIFY(!rig.find<ChildWindow>(u"PrmTbl"_s)->transferButtonsEnabled());
        rig.open();
        QVERIFY(rig.control<QCheckBox>(u"ChkRtmon"_s)->isChecked());
        rig.control<QCheckBox>(u"ChkRtmon"_s)->setChecked(false);
        rig.ok();
        QVERIFY(!rig.link().RealTimeMonitor);
        QVERIFY(!rig.link().run().MonitorRunning);
        QVERIFY(rig.find<ChildWindow>(u"PrmTbl"_s)->transferButtonsEnabled());
    }

    void cancelKeepsEverySetting() {
        OptionsRig rig;
        rig.link().DriverVersion = 110;
        rig.open();
        ShellRig::typeAndLeave(rig.control<QLineEdit>(u"TxtRetryTime"_s), u"900"_s);
        for (const char* name : {"ChkRtmon", "ChkAxisCtn", "ChkPrmCngCtn"})
            rig.control<QCheckBox>(QString::fromLatin1(name))->setChecked(false);
        rig.control<QComboBox>(u"CmbConnectSel"_s)->setCurrentIndex(2);
        for (int k = 0; k < 3; ++k)
            rig.writeChoice(k)->setCurrentIndex(0);
        rig.control<QPushButton>(u"CmdOkCancel(1)"_s)->click();

        QVERIFY(!rig.dialog->isVisible());
        QCOMPARE(rig.engine().pollIntervalMs(), 250);
        QVERIFY(rig.link().RealTimeMonitor && rig.link().run().MonitorRunning);
        QVERIFY(rig.global.AxisChangeCaution && rig.global.ConnectCautionDialog);
        QCOMPARE(rig.global.Prm1To45Connect, 0);
        QCOMPARE(rig.link().NonVolatileWrite, (std::array<bool, 3>{true, true, true}));
        // The next opening shows the stored values again.
        rig.open();
        QCOMPARE(rig.control<QLineEdit>(u"TxtRetryTime"_s)->text(), u"250"_s);
        QVERIFY(rig.control<QCheckBox>(u"ChkAxisCtn"_s)->isChecked());
        QCOMPARE(rig.control<QComboBox>(u"CmbConnectSel"_s)->currentIndex(), 0);
    }

    void compactSizeHidesTheMemoryChoice() {
        OptionsRig rig;
        rig.open();
        auto* frame = rig.control<QGroupBox>(u"Frame1"_s);
        QVERIFY(!frame->isVisible());
        QVERIFY(rig.dialog->height() < 6585 / 15);
        QCOMPARE(frame->title(), en(Text::OptionsNonVolatileMemoryWrite));
        QCOMPARE(rig.control<QLabel>(u"LblDataKind(2)"_s)->buddy(), rig.writeChoice(2));
        const int compactHeight = rig.dialog->height();

        // Once the console's free-text Send is revealed, the dialog offers the choice.
        OptionDialog full(rig.global, rig.engine(), [] { return true; });
        full.show();
        QVERIFY(full.findChild<QGroupBox*>(u"Frame1"_s)->isVisible());
        QVERIFY(full.height() >= 6585 / 15);
        QVERIFY(full.height() > compactHeight);
    }

    void versionDialogShowsBothVersions() {
        ShellRig rig;
        rig.start();
        QAction* item = rig.find<QAction>(u"mnuSystemItem(3)"_s);
        item->trigger();
        auto* version = rig.find<VersionDialog>(u"Version"_s);
        QVERIFY(version->isVisible());
        const auto label = [version](const char* name) {
            return version->findChild<QLabel*>(QString::fromLatin1(name))->text();
        };
        QCOMPARE(label("LblVer"), u"1.06"_s);
        QCOMPARE(label("LblOrvixK7Ver"), u"0.00"_s);
        QCOMPARE(label("Label2"), en(Text::VersionPcSoftware));
        QCOMPARE(version->windowTitle(), en(Text::CaptionVersion));
        version->findChild<QPushButton*>(u"CmdOk"_s)->click();
        QVERIFY(!version->isVisible());

        rig.link().DriverVersion = 112;
        rig.find<QAction>(u"mnuSystemLang(1)"_s)->trigger();
        item->trigger();
        QCOMPARE(label("LblOrvixK7Ver"), u"1.12"_s);
        QCOMPARE(label("Label5"), ja(Text::VersionDriveSoftware));
        QCOMPARE(version->windowTitle(), ja(Text::CaptionVersion));
        QCOMPARE(VersionDialog::formatVersion(5), u"0.05"_s);
    }
};

QTEST_MAIN(TestOptionDialogs)
#include "core/shared/TextId.h"
#include "tst_optiondialogs.moc"
