#include "core/monitor/ServoStatusView.h"
#include "gui/monitor/NumMonitorWindow.h"

#include "ShellRig.h"
#include "core/link/TransportFactory.h"
#include "sim/SimulatedLine.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

using namespace velora;
using namespace Qt::StringLiterals;
using namespace velora::test;

namespace {

// A monitor reply for axis 0 as the drive sends it. Fields: now position, torque command,
// status word, torque peak; everything else zero.
QString maReply(const QString& position, const QString& torque, const QString& status,
                const QString& peak = u"0000"_s) {
    return u"0ma"_s + position + QString(24, u'0') + u"00000000"_s + torque +
           QString(6 + 4 + 8 + 4, u'0') + status + u"00"_s + QString(19, u'0') + peak;
}

QString idleReply() {
    return maReply(u"00000000"_s, u"0000"_s, u"0000"_s);
}

}  // namespace

// The numerical monitor in the main window, fed by monitor replies through the fake port.
class TestNumMonitor : public QObject {
    Q_OBJECT
private:
    template <typename T = QLabel>
    T* control(const ShellRig& rig, const QString& name) const {
        T* found = rig.find<T>(name, rig.find(u"NumMonitor"_s));
        if (!found)
            qFatal("no control %s", qPrintable(name));
        return found;
    }
    QColor switchColour(const ShellRig& rig, int index) const {
        return control<QPushButton>(rig, u"LabelRtMon(%1)"_s.arg(index))
            ->palette()
            .color(QPalette::Button);
    }

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void replyShowsValuesAndStatus() {
        ShellRig rig;
        rig.start();
        // Resolution bit and servo on; a drive not yet identified reports no torque peak.
        rig.port()->reply(maReply(u"FFFFFFF6"_s, u"04D2"_s, u"0401"_s, u"0064"_s));
        QTRY_COMPARE(control(rig, u"LabelNumMon(0)"_s)->text(), u"-10"_s);
        QCOMPARE(control(rig, u"LabelNumMon(6)"_s)->text(), u"12.34"_s);
        QCOMPARE(control(rig, u"Label3(6)"_s)->text(), u"[%]"_s);
        QCOMPARE(control(rig, u"LabelNumMon(12)"_s)->text(), QString());
        QCOMPARE(control(rig, u"LabelStatus(0)"_s)->text(), u": ON"_s);
        QCOMPARE(control(rig, u"Label1(10)"_s)->text(), en(Text::MonitorResoSel));
        // Read out with its value, not only its name.
        QCOMPARE(control(rig, u"LabelNumMon(0)"_s)->accessibleName(),
                 en(Text::MonitorNowPosition) + u": -10"_s);
        // The status bar follows too, merged like the window.
        QTRY_COMPARE(rig.find<QLabel>(u"LblSVON"_s)->palette().color(QPalette::Window),
                     QColor(QRgb(monitorcolour::Green)));

        // Replies closer together than a repaint are merged: only the last is shown.
        QCOMPARE(rig.sent().last(), u"0PR77"_s);
        rig.port()->reply(u"0PR0000006E"_s);  // version 1.10: the peak is reported from now on
        rig.engine().sendPoll();
        for (const QString& position : {u"00000001"_s, u"00000002"_s, u"00000003"_s})
            rig.port()->reply(maReply(position, u"0000"_s, u"FFFF"_s, u"FF9C"_s));
        QCOMPARE(control(rig, u"LabelNumMon(0)"_s)->text(), u"-10"_s);
        QTRY_COMPARE(control(rig, u"LabelNumMon(0)"_s)->text(), u"3"_s);
        QCOMPARE(control(rig, u"LabelNumMon(12)"_s)->text(), u"-1"_s);

        // Relabelled at run time, values kept.
        rig.find<QAction>(u"mnuSystemLang(1)"_s)->trigger();
        QCOMPARE(control<QPushButton>(rig, u"CmdTrqPeakReset"_s)->text(),
                 ja(Text::MonitorTorquePeakReset));
        QCOMPARE(control(rig, u"LabelNumMon(0)"_s)->accessibleName(),
                 ja(Text::MonitorNowPosition) + u": 3"_s);
        QCOMPARE(control(rig, u"LabelNumMon(0)"_s)->text(), u"3"_s);
    }

    void followsTheSimulatedDriveWhenItJogs() {
        sim::SimOptions options;
        options.fast = true;
        sim::SimulatedLine line(options);
        QVERIFY2(line.open(), qPrintable(line.errorString()));
        ShellRig rig({}, createTransport, line.devicePath());
        rig.start();
        auto* velocity = rig.find<QLabel>(QStringLiteral("LabelNumMon(4)"));
        auto* servoOn = rig.find<QLabel>(QStringLiteral("LabelStatus(0)"));
        QVERIFY(velocity && servoOn);
        const auto runUntil = [&rig](const std::function<bool()>& done) {
            for (int i = 0; i < 300 && !done(); ++i) {
                rig.engine().tick();
                QTest::qWait(10);
            }
            return done();
        };
        QVERIFY(runUntil([&] { return rig.link().run().MonitorRunning; }));
        sim::DriveModel& drive = line.bus().drive(0)->model();
        QVERIFY(drive.servoOn() == sim::DriveModel::Refusal::None);
        QVERIFY(drive.jog(false) == sim::DriveModel::Refusal::None);
        // The chain runs back to back: the values follow without the slot polls.
        QVERIFY(runUntil([&] { return velocity->text().toInt() > 0; }));
        QVERIFY(servoOn->text().contains(QStringLiteral("ON")));
        QVERIFY(rig.link().ServoStatus & 1U);
    }

    void monitorSwitch() {
        ShellRig rig;
        rig.start();
        const QColor chosen{QRgb(monitorcolour::SwitchChosen)};
        const QColor idle{QRgb(monitorcolour::SwitchIdle)};
        QCOMPARE(switchColour(rig, 0), chosen);
        QCOMPARE(switchColour(rig, 1), idle);
        const int sentBefore = rig.sent().size();

        QTest::mouseClick(control<QPushButton>(rig, u"LabelRtMon(1)"_s), Qt::LeftButton);
        QVERIFY(!rig.link().RealTimeMonitor);
        QCOMPARE(switchColour(rig, 0), idle);
        QCOMPARE(switchColour(rig, 1), chosen);
        QCOMPARE(rig.sent().size(), sentBefore);

        // A double click on the values turns the monitor on, but neither shows nor polls.
        QTest::mouseDClick(control<QGroupBox>(rig, u"Frame2"_s), Qt::LeftButton);
        QVERIFY(rig.link().RealTimeMonitor);
        QCOMPARE(switchColour(rig, 1), chosen);
        QCOMPARE(rig.sent().size(), sentBefore);

        QTest::mouseClick(control<QPushButton>(rig, u"LabelRtMon(0)"_s), Qt::LeftButton);
        QCOMPARE(switchColour(rig, 0), chosen);
        QCOMPARE(switchColour(rig, 1), idle);
        QCOMPARE(rig.sent().mid(sentBefore), QStringList{u"0ma"_s});

        // The link giving up shows the switch off.
        rig.engine().DisableTransferButtons();
        QCOMPARE(switchColour(rig, 0), idle);
        QCOMPARE(switchColour(rig, 1), chosen);
    }

    void torquePeakResetNeedsVersion110_data() {
        QTest::addColumn<QString>("versionReply");
        QTest::addColumn<bool>("usable");
        QTest::newRow("1.09") << u"0PR0000006D"_s << false;
        QTest::newRow("1.10") << u"0PR0000006E"_s << true;
    }
    void torquePeakResetNeedsVersion110() {
        QFETCH(QString, versionReply);
        QFETCH(bool, usable);
        ShellRig rig;
        rig.start();
        auto* reset = control<QPushButton>(rig, u"CmdTrqPeakReset"_s);
        QVERIFY(!reset->isEnabled());
        rig.port()->reply(idleReply());
        QCOMPARE(rig.sent().last(), u"0PR77"_s);
        rig.port()->reply(versionReply);
        rig.port()->reply(idleReply());
        QCOMPARE(reset->isEnabled(), usable);
        if (!usable)
            return;

        // Queued for the next turn, never sent at once.
        const int sentBefore = rig.sent().size();
        QTest::mouseClick(reset, Qt::LeftButton);
        QCOMPARE(rig.link().run().QueuedCommand, u"0QP"_s);
        QCOMPARE(rig.sent().size(), sentBefore);

        rig.engine().DisableTransferButtons();
        QVERIFY(!reset->isEnabled());
    }
};

QTEST_MAIN(TestNumMonitor)
#include "core/shared/TextId.h"
#include "tst_nummonitor.moc"
