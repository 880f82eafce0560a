#include "gui/console/ComConsoleWindow.h"
#include "gui/monitor/AlarmMonWindow.h"
#include "gui/monitor/IOStatusWindow.h"

#include "ShellRig.h"
#include "core/link/TransportFactory.h"
#include "sim/SimulatedLine.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

using namespace velora;
using namespace velora::test;
using namespace Qt::StringLiterals;

namespace {

// The main window on the simulated drive of axis 0 through the real serial back-end.
struct SimShell {
    explicit SimShell(const sim::SimOptions& options) : line(options) {
        QVERIFY2(line.open(), qPrintable(line.errorString()));
        QObject::connect(&line, &sim::SimulatedLine::commandReceived,
                         [this](const QString& text) { received << text; });
        rig = std::make_unique<ShellRig>(QMap<QString, QString>{}, createTransport,
                                         line.devicePath());
        rig->start();
        // The chain alone until the drive is identified: a slot poll crossing the
        // identification would hide the version.
        for (int i = 0; i < 200 && rig->link().DriverVersion == 0; ++i)
            QTest::qWait(10);
    }

    // Ticks the polling timer as the program does until done, within about three seconds.
    bool runUntil(const std::function<bool()>& done) {
        for (int i = 0; i < 300 && !done(); ++i) {
            rig->engine().tick();
            QTest::qWait(10);
        }
        return done();
    }
    template <typename T = QLabel>
    T* find(const QString& name) const {
        T* found = rig->find<T>(name);
        if (!found)
            qFatal("no control %s", qPrintable(name));
        return found;
    }
    // Clicks a button once the link has unlocked it.
    bool click(const QString& name) {
        auto* button = find<QPushButton>(name);
        if (!runUntil([button] { return button->isEnabled(); }))
            return false;
        QTest::mouseClick(button, Qt::LeftButton);
        return true;
    }
    sim::DriveModel& drive() { return line.bus().drive(0)->model(); }

    sim::SimulatedLine line;
    std::unique_ptr<ShellRig> rig;
    QStringList received;
};

// The hidden switches: the middle button released with Ctrl+Alt.
void hiddenGesture(QWidget* widget) {
    QTest::mousePress(widget, Qt::MiddleButton, Qt::ControlModifier | Qt::AltModifier);
    QTest::mouseRelease(widget, Qt::MiddleButton, Qt::ControlModifier | Qt::AltModifier);
}

void typeLine(QLineEdit* box, const QString& text, Qt::Key key = Qt::Key_Return) {
    box->clear();
    QTest::keyClicks(box, text);
    QTest::keyClick(box, key);
}

QColor background(const QLabel* label) {
    return label->palette().color(QPalette::Window);
}

}  // namespace

// The console, the alarm monitor and the I/O status window against the simulated drive.
class TestConsoleWindows : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void commandConsole_data() {
        QTest::addColumn<int>("version");
        QTest::newRow("1.09") << 109;
        QTest::newRow("1.10") << 110;
    }
    void commandConsole() {
        QFETCH(int, version);
        sim::SimOptions options;
        options.fast = true;
        options.version = version;
        SimShell shell(options);
        QCOMPARE(shell.rig->link().DriverVersion, version);
        QVERIFY(shell.runUntil(
            [&] { return shell.find<QPushButton>(u"CmdButton(30)"_s)->isEnabled(); }));
        for (int i = 31; i <= 34; ++i)
            QCOMPARE(shell.find<QPushButton>(u"CmdButton(%1)"_s.arg(i))->isEnabled(),
                     version >= 110);
        // A locked button still says what it would send and why it is locked.
        const QString tip = shell.find<QPushButton>(u"CmdButton(32)"_s)->toolTip();
        QVERIFY2(tip.startsWith(u"EW \u2014 "_s) && tip.endsWith(en(Text::CmdHelpNeedsSoftware110)),
                 qPrintable(tip));
        if (version < 110)
            return;

        // Servo on, jog, stop: the monitor follows the drive.
        auto* velocity = shell.find(u"LabelNumMon(4)"_s);
        QVERIFY(shell.click(u"CmdButton(2)"_s));
        QVERIFY(shell.runUntil([&] { return (shell.rig->link().ServoStatus & 1U) != 0; }));
        QVERIFY(shell.click(u"CmdButton(23)"_s));
        QVERIFY(shell.runUntil([&] { return velocity->text().toInt() > 0; }));
        QVERIFY(shell.click(u"CmdButton(25)"_s));
        QVERIFY(shell.runUntil([&] { return velocity->text() == u"0"_s; }));

        // An argument box corrects itself when left.
        ShellRig::typeAndLeave(shell.find<QLineEdit>(u"TxtNum(0)"_s), u"99"_s);
        QCOMPARE(shell.find<QLineEdit>(u"TxtNum(0)"_s)->text(), u"63"_s);

        // The free-text row, revealed by its hidden switch.
        auto* send = shell.find<QPushButton>(u"CommandSend"_s);
        auto* typed = shell.find<QLineEdit>(u"ComText(0)"_s);
        auto* received = shell.find<QLineEdit>(u"ComText(1)"_s);
        QVERIFY(send->isHidden() && typed->isReadOnly());
        hiddenGesture(shell.find<QPushButton>(u"CmdButton(12)"_s));
        QVERIFY(!send->isHidden() && !typed->isReadOnly());
        QCOMPARE(shell.rig->find<QLabel>(u"Label1(0)"_s, shell.rig->find(u"ComConsole"_s))->buddy(),
                 typed);
        // What the user is typing survives the echo of other commands.
        typed->window()->activateWindow();
        typed->setFocus();
        typeLine(typed, u"0PR"_s, Qt::Key_7);
        shell.rig->engine().SendCommand(u"0AD"_s);
        QVERIFY(shell.runUntil([&] { return send->isEnabled(); }));
        QCOMPARE(typed->text(), u"0PR7"_s);
        typeLine(typed, u"0PR77"_s);
        QVERIFY(shell.runUntil([&] { return received->text() == u"0PR0000006E"_s; }));

        // Too long for a frame: told, kept off the line, not remembered.
        const QString tooLong = u"0SO"_s + QString(37, u'1');
        typeLine(typed, tooLong);
        QCOMPARE(shell.rig->messages.size(), 1);
        QVERIFY(shell.rig->messages[0].text.contains(en(Text::LinkCommandHoldsMost30)));
        shell.runUntil([&] { return shell.received.size() > 20; });
        QVERIFY(!shell.received.contains(tooLong));
        typeLine(typed, QString(), Qt::Key_Up);
        QCOMPARE(typed->text(), u"0PR77"_s);
        QTest::keyClick(typed, Qt::Key_Down);
        QCOMPARE(typed->text(), QString());

        // The polling echo, switched over the Send button.
        hiddenGesture(send);
        QVERIFY(shell.rig->link().run().EchoPolls);
        QVERIFY(shell.runUntil([&] { return received->text().startsWith(u"0ma"_s); }));
        hiddenGesture(send);
        QVERIFY(!shell.rig->link().run().EchoPolls);
        hiddenGesture(shell.find<QPushButton>(u"CmdButton(12)"_s));
        QVERIFY(send->isHidden() && typed->text().isEmpty());
    }

    void alarmMonitor() {
        sim::SimOptions options;
        options.fast = true;
        options.faults.alarm = 5;
        options.faults.alarmAtMs = 300;
        SimShell shell(options);
        auto* window = shell.rig->find<AlarmMonWindow>(u"AlarmMon"_s);
        auto* overCurrent = shell.find(u"LabelNowAlarm(4)"_s);
        auto* newest = shell.find(u"LabelAlmHistory(0)"_s);
        const QColor red(255, 0, 0);
        QCOMPARE(background(overCurrent), window->idleLampColour());

        QVERIFY(shell.runUntil([&] { return background(overCurrent) == red; }));
        QCOMPARE(overCurrent->text(), en(Text::AlarmName05OverCurrent));
        QCOMPARE(background(shell.find(u"LabelNowAlarm(0)"_s)), window->idleLampColour());
        QCOMPARE(newest->text(), en(Text::AlarmName05OverCurrent));
        QCOMPARE(newest->accessibleName(),
                 en(Text::AlarmAlarmHistory) + u" 1: "_s + en(Text::AlarmName05OverCurrent));
        QVERIFY(shell.find(u"LabelAlmHistory(1)"_s)->text().isEmpty());

        QVERIFY(shell.click(u"CommandALM(0)"_s));
        QVERIFY(shell.runUntil([&] { return background(overCurrent) != red; }));
        QCOMPARE(background(overCurrent), window->idleLampColour());
        QCOMPARE(newest->text(), en(Text::AlarmName05OverCurrent));

        shell.rig->find<QAction>(u"mnuSystemLang(1)"_s)->trigger();
        QCOMPARE(newest->text(), ja(Text::AlarmName05OverCurrent));
        QCOMPARE(shell.find<QPushButton>(u"CommandALM(1)"_s)->text(), ja(Text::AlarmHistoryClear));
        QVERIFY(shell.click(u"CommandALM(1)"_s));
        QVERIFY(shell.runUntil([&] { return newest->text().isEmpty(); }));
    }

    void ioStatus() {
        sim::SimOptions options;
        options.fast = true;
        SimShell shell(options);
        auto* brake = shell.find(u"LblOutState(3)"_s);
        auto* fin = shell.find(u"LblOutState(0)"_s);
        auto* brakeLamp = shell.find<QFrame>(u"ShpOutLamp(3)"_s);
        const QString closedLamp = QColor(IOStatusWindow::ClosedLamp).name();
        QVERIFY(shell.runUntil([&] { return shell.rig->link().run().MonitorRunning; }));
        QCOMPARE(brake->text(), u": OPEN"_s);
        QVERIFY(!brakeLamp->styleSheet().contains(closedLamp));
        QCOMPARE(shell.find(u"LblOutName(3)"_s)->text(), u"BK"_s);
        QCOMPARE(shell.find(u"LblInName(0)"_s)->text(), u"IN1  (RSEL)"_s);

        // Command mode 1 names the inputs after the jog signals once parameters are read.
        QVERIFY(shell.drive().memory().writeParam(1, 1, false));
        shell.rig->window->paramTransfer().readAll();
        QVERIFY(shell.runUntil(
            [&] { return shell.find(u"LblInName(0)"_s)->text() == u"IN1  (PJOG)"_s; }));
        QCOMPARE(shell.find(u"LblInName(4)"_s)->text(), u"IN5  (DEC)"_s);
        QCOMPARE(shell.find(u"LblInState(0)"_s)->accessibleName(), u"IN1  (PJOG) : OPEN"_s);

        shell.drive().setInputs(0b00001);
        QVERIFY(
            shell.runUntil([&] { return shell.find(u"LblInState(0)"_s)->text() == u": CLOSE"_s; }));
        QCOMPARE(shell.find(u"LblInState(1)"_s)->text(), u": OPEN"_s);

        // Servo on releases the brake and the drive stands in position; a jog leaves it.
        QVERIFY(shell.drive().servoOn() == sim::DriveModel::Refusal::None);
        QVERIFY(shell.runUntil(
            [&] { return brake->text() == u": CLOSE"_s && fin->text() == u": CLOSE"_s; }));
        QVERIFY(brakeLamp->styleSheet().contains(closedLamp));
        QVERIFY(shell.drive().jog(false) == sim::DriveModel::Refusal::None);
        QVERIFY(shell.runUntil([&] { return fin->text() == u": OPEN"_s; }));

        shell.rig->find<QAction>(u"mnuSystemLang(1)"_s)->trigger();
        QCOMPARE(shell.rig->find<QGroupBox>(u"Frame2"_s, shell.rig->find(u"IOStatus"_s))->title(),
                 ja(Text::IoOutput));
    }
};

QTEST_MAIN(TestConsoleWindows)
#include "core/shared/TextId.h"
#include "tst_consolewindows.moc"
