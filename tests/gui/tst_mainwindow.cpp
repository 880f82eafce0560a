#include "core/params/ParamFile.h"
#include "gui/app/CommSettings.h"
#include "gui/connect/ConnectionCheckDialog.h"
#include "gui/console/ComConsoleWindow.h"
#include "gui/link/SystemBar.h"
#include "gui/link/TraceWindow.h"
#include "gui/params/PrmTblWindow.h"
#include "gui/shared/ChildWindow.h"

#include "ShellRig.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QTableWidget>
#include <QTextBrowser>
#include <QtTest>

using namespace velora;
using namespace Qt::StringLiterals;
using namespace velora::test;

namespace {

const QStringList kChildOrder{"ComConsole", "PrmTbl",   "PointTbl", "ComTbl",
                              "NumMonitor", "IOStatus", "AlarmMon", "HMon"};

QStringList frameOrder(const ShellRig& rig) {
    QStringList names;
    const auto frames = rig.find<QMdiArea>(u"MDIClient"_s)->subWindowList(QMdiArea::CreationOrder);
    for (const QMdiSubWindow* frame : frames)
        names << frame->widget()->objectName();
    return names;
}

}  // namespace

// The main window: start-up in its order and its variants, the menus and the language switch,
// the orderly end, the sibling program, the busy dialog and the status bar's echo switch.
class TestMainWindow : public QObject {
    Q_OBJECT
private slots:
    void firstStartShowsEveryWindowInOrder() {
        ShellRig rig;
        rig.start();
        QCOMPARE(frameOrder(rig), kChildOrder + QStringList{"Trace"});
        for (const QString& name : kChildOrder)
            QVERIFY2(rig.find<ChildWindow>(name)->parentWidget()->isVisible(), qPrintable(name));
        for (const char* name : {"SystemBar", "LblCom", "LblDateTime", "LabelAxisNum",
                                 "ShpStatus(0)", "ShpStatus(1)", "LblSVON"})
            QVERIFY2(rig.find(QString::fromLatin1(name)), name);
        for (const char* name : {"InCOMDialog", "CommSettings", "OptionDialog", "Version"})
            QVERIFY2(!rig.find(QString::fromLatin1(name))->isVisible(), name);

        // Defaults: English, port 1, axis 0, 9600 baud, RS-232C, online, and the first poll.
        QCOMPARE(rig.window->windowTitle(), en(Text::MainCaption));
        QCOMPARE(rig.find<ChildWindow>(u"PrmTbl"_s)->windowTitle(), en(Text::CaptionParameter));
        QCOMPARE(rig.find<QLabel>(u"Label1"_s, rig.find(u"SystemBar"_s))->text(),
                 en(Text::StatusBarRUN));
        QCOMPARE(rig.find<QLabel>(u"LabelAxisNum"_s)->text(), u"0"_s);
        QCOMPARE(rig.port()->backEnd(), BackEnd::Rs232);
        QCOMPARE(rig.port()->opens.value(0).second, 9600);
        QCOMPARE(rig.sent(), QStringList{"0ma"});
        QCOMPARE(rig.find<QLabel>(u"LblLink"_s)->text(),
                 en(Text::StatusBarPortAxis).arg(rig.engine().device(), u"9600"_s).arg(0));
        QVERIFY(rig.find<QAction>(u"mnuSystemLang(0)"_s)->isChecked());
        QVERIFY(rig.messages.isEmpty());

        // The Window menu lists each window once, the trace too, which is hidden until asked
        // for and records nothing until told to; a check on those open.
        QMenu* windowMenu = rig.find<QMenu>(u"mnuWindow"_s);
        const auto items = [&] {
            emit windowMenu->aboutToShow();
            QStringList texts;
            for (const QAction* item : windowMenu->actions()) {
                if (item->objectName().startsWith(u"mnuWindowItem"_s))
                    texts << item->text() + (item->isChecked() ? u" [x]"_s : QString());
            }
            return texts;
        };
        QCOMPARE(items().first(), "&1 " + en(Text::CaptionCommandConsole) + u" [x]"_s);
        QCOMPARE(items().last(), "&9 " + en(Text::TraceCaption));
        QVERIFY(!rig.find(u"Trace"_s)->isVisible());
        rig.find<QAction>(u"mnuWindowItem(8)"_s)->trigger();
        QVERIFY(rig.find(u"Trace"_s)->isVisible());
        QCOMPARE(items().size(), kChildOrder.size() + 1);
        QCOMPARE(items().last(), "&9 " + en(Text::TraceCaption) + u" [x]"_s);
        QVERIFY(!rig.engine().frameTrace());

        // A child's close box minimises it.
        QWidget* frame = rig.find(u"ComConsole"_s)->parentWidget();
        QVERIFY(!frame->close());
        QVERIFY(frame->isMinimized() && frame->isVisible());
        QVERIFY(!items().first().endsWith(u"[x]"_s));
    }

    // The first start piles nothing: the windows shown stand side by side, the others are
    // minimised below them. The layout of an orderly end comes back at the next start, unless
    // it does not fit the screen of the moment.
    void firstStartFitsAndTheLayoutComesBack() {
        ShellRig first;
        first.start();
        const QList<QMdiSubWindow*> frames =
            first.find<QMdiArea>(u"MDIClient"_s)->subWindowList(QMdiArea::CreationOrder);
        const QRect area = first.find<QMdiArea>(u"MDIClient"_s)->viewport()->rect();
        for (const QMdiSubWindow* a : frames) {
            if (!a->isVisible())
                continue;
            QVERIFY2(area.contains(a->geometry()), qPrintable(a->widget()->objectName()));
            for (const QMdiSubWindow* b : frames) {
                QVERIFY2(a == b || !b->isVisible() || !a->geometry().intersects(b->geometry()),
                         qPrintable(a->widget()->objectName() + " " + b->widget()->objectName()));
            }
        }
        QMdiSubWindow* console = frames.first();
        QVERIFY(!console->isMinimized());
        console->setGeometry(10, 20, 600, 470);
        console->showMinimized();
        first.find<QPushButton>(u"CmdJoin"_s)->click();
        first.find<QAction>(u"mnuFileItem(0)"_s)->trigger();

        QMap<QString, QString> kept;
        const QSettings stored(first.settingsFile(), QSettings::IniFormat);
        for (const QString& key : stored.allKeys())
            kept.insert(key, stored.value(key).toString());
        QCOMPARE(kept.value(u"WindowLayout/ComConsole"_s), u"10,20,600,470,Minimised"_s);
        ShellRig again(kept);
        again.start();
        QWidget* restored = again.find(u"ComConsole"_s)->parentWidget();
        QVERIFY(restored->isMinimized());
        restored->showNormal();
        QCOMPARE(restored->geometry(), QRect(10, 20, 600, 470));
        QVERIFY(again.global.TablesJoined);

        kept.insert(u"WindowLayout/ComConsole"_s, u"3000,20,600,470,Normal"_s);
        ShellRig elsewhere(kept);
        elsewhere.start();
        QCOMPARE(elsewhere.find(u"ComConsole"_s)->parentWidget()->pos(), QPoint(0, 0));
        QVERIFY(!elsewhere.global.TablesJoined);
    }

    void offlineStartSendsNothing() {
        ShellRig rig({{"COMSetting/Online", "False"}, {"Language/Language", "1"}});
        rig.start();
        rig.ticks(10);
        QVERIFY(rig.port()->frames.isEmpty());
        QVERIFY(rig.port()->opens.isEmpty());
        QCOMPARE(rig.window->windowTitle(), ja(Text::MainCaptionOffline));
        QCOMPARE(rig.find<QLabel>(u"LblLink"_s)->text(), ja(Text::StatusBarOffline));
        QVERIFY(!rig.find<ComConsoleWindow>(u"ComConsole"_s)->consoleEnabled());
        QVERIFY(!rig.find<ChildWindow>(u"PrmTbl"_s)->transferButtonsEnabled());
        QVERIFY(!rig.find(u"CommSettings"_s)->isVisible());
        QVERIFY(rig.find<QAction>(u"mnuSystemLang(1)"_s)->isChecked());
        // The monitor switch shows off (its "off" button chosen) and cannot be used.
        const auto* on = rig.find<QPushButton>(u"LabelRtMon(0)"_s);
        QVERIFY(!on->isEnabled());
        QCOMPARE(on->palette().color(QPalette::Button), QColor(192, 192, 192));

        // A file loaded offline enables no transfer; a send forced anyway fails at once.
        auto* prm = rig.find<PrmTblWindow>(u"PrmTbl"_s);
        QVERIFY(prm->paramFile().write(rig.dir.filePath(u"a.prm"_s)));
        QCOMPARE(prm->paramFile().read(rig.dir.filePath(u"a.prm"_s)),
                 ParamFile::ReadResult::Loaded);
        for (const int i : {PrmTblWindow::WriteServo, PrmTblWindow::ReadServo})
            QVERIFY(!rig.find<QPushButton>(u"Command(%1)"_s.arg(i), prm)->isEnabled());
        prm->Command_Click(PrmTblWindow::ReadServo);
        QCOMPARE(rig.messages.last().text, ja(Text::LinkNotSentVeloraOffline));
        QVERIFY(!rig.find(u"InCOMDialog"_s)->isVisible() && !rig.link().run().ParamTransferActive);
    }

    void allAxesStartsWithTransfersDisabled() {
        const QString device = u"/dev/ttyV9"_s;  // as --port gives it
        ShellRig rig({{"COMSetting/AxisNumber", "15"}, {"COMSetting/RtMon", "False"}}, {}, device);
        rig.start();
        QCOMPARE(rig.window->windowTitle(),
                 en(Text::MainCaption) + en(Text::StatusBarDeviceSuffix).arg(device));
        QCOMPARE(rig.find<QLabel>(u"LblLink"_s)->text(),
                 en(Text::StatusBarPortAxis).arg(device, u"9600"_s).arg(15));
        QCOMPARE(rig.find<QLabel>(u"LabelAxisNum"_s)->text(), u"15"_s);
        for (const QString& name : kChildOrder) {
            QVERIFY2(!rig.find<ChildWindow>(name)->transferButtonsEnabled(), qPrintable(name));
        }
        QVERIFY(rig.port()->frames.isEmpty());
    }

    void languageSwitchRelabelsEverythingAtOnce() {
        ShellRig rig;
        rig.start();
        rig.find<QAction>(u"mnuSystemLang(1)"_s)->trigger();
        QCOMPARE(rig.link().LanguageId, Language::Japanese);
        QVERIFY(rig.find<QAction>(u"mnuSystemLang(1)"_s)->isChecked());
        QVERIFY(!rig.find<QAction>(u"mnuSystemLang(0)"_s)->isChecked());
        QCOMPARE(rig.find<QMenu>(u"mnuFile"_s)->title(), ja(Text::MenuFile));
        QCOMPARE(rig.find<QAction>(u"mnuFileItem(0)"_s)->text(), ja(Text::MenuQuit));
        QCOMPARE(rig.find<QAction>(u"mnuSystemItem(4)"_s)->text(),
                 ja(Text::MenuSoftwareVersionChange));
        QCOMPARE(rig.find<ChildWindow>(u"HMon"_s)->windowTitle(), ja(Text::CaptionWaveMonitor));
        QCOMPARE(rig.find<QLabel>(u"Label1(0)"_s, rig.find(u"ComConsole"_s))->text(),
                 ja(Text::ConsoleSendLabel));
        QCOMPARE(rig.find<QLabel>(u"LblCom"_s)->text(), ja(Text::StatusBarCom));
        // The caption follows only the next online/offline change.
        QCOMPARE(rig.window->windowTitle(), en(Text::MainCaption));
        // The toolkit's own buttons follow the language, both ways.
        const auto retryText = [] {
            return QMessageBox(QMessageBox::Critical, {}, {}, QMessageBox::Retry)
                .button(QMessageBox::Retry)
                ->text();
        };
        QCOMPARE(retryText(), u"再試行"_s);
        rig.find<QAction>(u"mnuSystemLang(0)"_s)->trigger();
        QCOMPARE(retryText(), u"Retry"_s);
    }

    void fitsASmallScreenWithEveryWindowInside() {
        ShellRig rig;
        rig.start();
        // The offscreen screen (800 x 600) is smaller than the design.
        QVERIFY(rig.window->screen()->availableGeometry().contains(rig.window->frameGeometry()));
        const auto* area = rig.find<QMdiArea>(u"MDIClient"_s);
        QCOMPARE(area->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
        // The windows inside the area: firstStartFitsAndTheLayoutComesBack.
    }

    void quitSavesEverySetting() {
        ShellRig rig;
        rig.refuseOpen = true;
        rig.start();
        // A port that cannot open asks for the comm settings, with the monitor suspended.
        QCOMPARE(rig.messages.size(), 1);
        QVERIFY(rig.messages[0].text.startsWith(en(Text::MsgCannotOpenPort)));
        QCOMPARE(rig.messages[0].icon, QMessageBox::Critical);
        QVERIFY(rig.find(u"CommSettings"_s)->isVisible());
        QVERIFY(!rig.link().run().PortOpen && !rig.link().RealTimeMonitor);
        rig.link().PortNumber = 3;
        rig.find<QAction>(u"mnuSystemLang(1)"_s)->trigger();
        rig.engine().setPollIntervalMs(600);
        QVERIFY(!QFile::exists(rig.settingsFile()));
        rig.find<QAction>(u"mnuFileItem(0)"_s)->trigger();
        QVERIFY(!rig.window->isVisible());
        QCOMPARE(rig.stored(u"COMSetting/PortNumber"_s), u"3"_s);
        QCOMPARE(rig.stored(u"Language/Language"_s), u"1"_s);
        QCOMPARE(rig.stored(u"COMSetting/RetryTime"_s), u"600"_s);
        QCOMPARE(rig.stored(u"COMSetting/RtMon"_s), u"True"_s);
        QCOMPARE(rig.stored(u"COMSetting/Online"_s), u"True"_s);
        QCOMPARE(rig.stored(u"WaveMonSettings/TrgPosition"_s), u"128"_s);
    }

    void abnormalEndLeavesTheStoreAsItWas() {
        ShellRig rig({{"COMSetting/PortNumber", "2"}});
        rig.start();
        rig.link().PortNumber = 5;
        rig.window.reset();
        QCOMPARE(rig.stored(u"COMSetting/PortNumber"_s), u"2"_s);
        QVERIFY(rig.stored(u"Language/Language"_s).isEmpty());
    }

    void softwareVersionChange() {
        ShellRig rig;
        rig.start();
        QAction* change = rig.find<QAction>(u"mnuSystemItem(4)"_s);
        change->trigger();
        // Neither file is there: the message names what was looked for, nothing ends.
        QCOMPARE(rig.messages.size(), 1);
        const QString text = rig.messages[0].text;
        QVERIFY2(text.contains(u"VeloraIntegral_EN"_s), qPrintable(text));
        QVERIFY(text.endsWith(u"\nFile Not Found."_s));
        QCOMPARE(rig.messages[0].title, u"Error"_s);
        QVERIFY(rig.window->isVisible());
        QVERIFY(!QFile::exists(rig.settingsFile()));
        const QSettings sibling(rig.dir.filePath(u"Halvern Electronics Velora Int.conf"_s),
                                QSettings::IniFormat);
        QCOMPARE(sibling.value(u"Setting/SkipFg"_s).toString(), u"False"_s);
#ifndef Q_OS_WIN
        // The English build is there: it starts, and this program saves and ends.
        QFile english(rig.dir.filePath(u"VeloraIntegral_EN"_s));
        QVERIFY(english.open(QIODevice::WriteOnly));
        english.write("#!/bin/sh\nexit 0\n");
        english.close();
        english.setPermissions(english.permissions() | QFileDevice::ExeOwner);
        change->trigger();
        QCOMPARE(rig.messages.size(), 1);
        QVERIFY(!rig.window->isVisible());
        QCOMPARE(rig.stored(u"COMSetting/Online"_s), u"True"_s);
#endif
    }

    void busyDialogGoesOnlyWhenTheLinkHidesIt() {
        ShellRig rig;
        rig.start();
        auto* busy = rig.find<QDialog>(u"InCOMDialog"_s);
        rig.engine().ShowBusyDialog();
        QVERIFY(busy->isVisible());
        QCOMPARE(busy->windowTitle(), en(Text::LinkComLabel));
        QCOMPARE(busy->findChild<QLabel*>(u"Label1"_s)->text(), en(Text::LinkCommunicating));
        QVERIFY(!busy->close());
        QTest::keyClick(busy, Qt::Key_Escape);
        QVERIFY(busy->isVisible());
        rig.engine().HideDialog();
        QVERIFY(!busy->isVisible());
        QVERIFY(!rig.link().run().BusyDialogShown);
    }

    void traceRecordsFiltersAndSaves() {
        ShellRig rig;
        rig.start();
        rig.link().RealTimeMonitor = false;
        rig.find<QCheckBox>(u"ChkRecord"_s)->setChecked(true);
        rig.engine().SendCommand(u"0PR77"_s);
        rig.port()->reply(u"0PR0000006E"_s);
        rig.engine().sendPoll();
        rig.port()->reply(u"0ma"_s);
        rig.find<QCheckBox>(u"ChkRecord"_s)->setChecked(false);
        rig.engine().sendPoll();  // not recorded any more
        auto* view = rig.find<QPlainTextEdit>(u"TxtTrace"_s);
        QCOMPARE(view->blockCount(), 4);
        QVERIFY(
            view->toPlainText().contains(QRegularExpression(u"< 0PR0000006E \\(\\+\\d+ us\\)"_s)));
        rig.find<QCheckBox>(u"ChkHidePolling"_s)->setChecked(true);
        QCOMPARE(view->blockCount(), 2);
        rig.find<QLineEdit>(u"TxtCode"_s)->setText(u"ma"_s);
        QCOMPARE(view->toPlainText(), QString());
        rig.find<QCheckBox>(u"ChkHidePolling"_s)->setChecked(false);
        QCOMPARE(view->blockCount(), 2);
        auto* trace = rig.find<TraceWindow>(u"Trace"_s);
        const QString path = rig.dir.filePath(u"trace.txt"_s);
        QVERIFY(trace->saveTo(path));
        QFile saved(path);
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(saved.readAll()), view->toPlainText() + u"\n"_s);
        rig.find<QPushButton>(u"CmdClear"_s)->click();
        QCOMPARE(view->toPlainText(), QString());
    }

    // The check lets go of the link's port while it looks, takes it back after, and offers the
    // port search when the drive was silent.
    void connectionCheckFromTheSystemMenu() {
        ShellRig rig;
        rig.start();
        auto* dialog = rig.window->connectionCheck();
        QStringList checked;
        bool heldDuringCheck = true;
        dialog->setCheck(ConnectionCheck(
            [&](const QString& device) {
                checked << device;
                heldDuringCheck = rig.port()->isOpen();
                DeviceFacts facts;
                facts.exists = facts.mayOpen = true;
                return facts;
            },
            [](const CheckTarget&) {
                LineTestResult silent;
                silent.open.ok = true;
                return silent;
            }));
        rig.find<QAction>(u"mnuSystemCheck"_s)->trigger();
        QCOMPARE(checked, QStringList{rig.engine().device()});
        QVERIFY(!heldDuringCheck);
        QVERIFY(rig.port()->isOpen() && rig.link().run().PortOpen);
        QVERIFY(rig.find<QPlainTextEdit>(u"TxtFindings"_s, dialog)
                    ->toPlainText()
                    .endsWith(u"Problem: "_s + en(Text::CheckSilent).arg(u"0", u"9600")));
        rig.find<QPushButton>(u"CmdCheckSearch"_s, dialog)->click();
        QVERIFY(!dialog->isVisible());
        QVERIFY(rig.window->commSettings()->isVisible() && rig.link().run().Searching);
    }

    void helpMenu() {
        ShellRig rig;
        rig.start();
        // A key given to an action later (a stop button, say) is listed without further ado.
        auto* later = new QAction(u"Stop all(&S)"_s, rig.window.get());
        later->setShortcut(Qt::Key_Escape);
        rig.find<QAction>(u"mnuHelpItem(1)"_s)->trigger();
        auto* help = rig.find<QDialog>(u"Help"_s);
        QVERIFY(help->isVisible());
        auto* keys = rig.find<QTableWidget>(u"GrdShortcuts"_s, help);
        QStringList rows;
        for (int r = 0; r < keys->rowCount(); ++r)
            rows << keys->item(r, 0)->text() + u" "_s + keys->item(r, 1)->text();
        QVERIFY2(rows.contains(u"F1 Read Me"_s) && rows.contains(u"Esc Stop all"_s),
                 qPrintable(rows.join(u", "_s)));

        // The README the program carries, and each alarm with its cause and remedy.
        QVERIFY(
            rig.find<QTextBrowser>(u"TxtReadMe"_s, help)->toPlainText().contains(u"Quick start"_s));
        rig.find<QAction>(u"mnuSystemLang(1)"_s)->trigger();
        rig.find<QAction>(u"mnuHelpItem(2)"_s)->trigger();
        auto* alarms = rig.find<QTableWidget>(u"GrdAlarms"_s, help);
        QCOMPARE(alarms->rowCount(), 8);
        QCOMPARE(alarms->item(4, 0)->text(), ja(Text::AlarmName05OverCurrent));
        QCOMPARE(alarms->item(4, 2)->text(), ja(Text::AlarmRemedyOverCurrent));
        QVERIFY(!rig.find<QLabel>(u"LblReadMeNote"_s, help)->isHidden());
    }

    void echoSwitchOnTheComLabel() {
        ShellRig rig;
        rig.start();
        auto* com = rig.find<QLabel>(u"LblCom"_s);
        QTest::mouseClick(com, Qt::MiddleButton, Qt::ControlModifier);
        QVERIFY(!rig.link().run().EchoPolls);
        QTest::mouseClick(com, Qt::MiddleButton, Qt::ControlModifier | Qt::AltModifier);
        QVERIFY(rig.link().run().EchoPolls);
        rig.ticks(2);
        QCOMPARE(rig.find<QLineEdit>(u"ComText(0)"_s)->text(), u"0ma"_s);
    }
};

QTEST_MAIN(TestMainWindow)
#include "core/shared/TextId.h"
#include "tst_mainwindow.moc"
