#include "core/monitor/RealTimeMonitor.h"
#include "core/params/ParamCatalogue.h"
#include "core/params/ParamTransfer.h"
#include "core/shared/TextCatalogue.h"
#include "e2e/SimLink.h"

#include <QtTest>

using namespace velora;
using velora::test::SimLink;

namespace {

// The link with the monitor chain and the parameter transfer (which reads the identification),
// as the application runs them.
struct Session : SimLink {
    Session() {
        InitParamTables(global.Params);
        ui.answerRetry = false;
    }
    // Ticks until cond holds or the ticks run out.
    bool tickUntil(const std::function<bool()>& cond, int maxTicks = 40) {
        for (int i = 0; i < maxTicks && !cond(); ++i)
            tick();
        return cond();
    }

    RealTimeMonitor monitor{engine};
    ParamTransfer params{engine, global.Params};
};

}  // namespace

// The link and the monitor chain against the simulated drive, through the real serial
// back-ends.
class TestE2eSession : public QObject {
    Q_OBJECT
private slots:
    void exchangeAndResendAfterDroppedReply_data() {
        QTest::addColumn<int>("backEnd");
        QTest::newRow("RS-232C") << int(BackEnd::Rs232);
        QTest::newRow("USB-RS232C") << int(BackEnd::UsbSerial);
    }
    void exchangeAndResendAfterDroppedReply() {
        QFETCH(int, backEnd);
        SimLink sim(static_cast<BackEnd>(backEnd));
        sim.line.faults().dropCodes.insert(QStringLiteral("PR"), 1);
        sim.start(false);
        sim.engine.SendCommand(QStringLiteral("0PR77"));
        QVERIFY(!sim.waitForReply(300));  // the first reply is lost
        sim.ticks(2);                     // re-sent on the second tick
        QVERIFY(sim.waitForReply());
        QCOMPARE(sim.heardCount(QStringLiteral("0PR77")), 2);
        QCOMPARE(sim.ui.comText[1], QStringLiteral("0PR0000006E"));  // version 1.10
        QVERIFY(sim.ui.controlsEnabled);
    }

    void replyWhileEveryAxisIsAddressedIsNotRead() {
        Session s;
        s.line.faults().delayMs = 100;
        s.start(false);
        s.engine.SendCommand(QStringLiteral("0PR77"));
        s.link.AxisNumber = 15;  // no drive answers a command to all axes
        QVERIFY(QTest::qWaitFor([&] { return s.heardCount(QStringLiteral("0PR77")) == 1; }, 2000));
        QTest::qWait(250);
        QVERIFY(s.link.run().AwaitingReply && s.link.ReceiveBuffer.isEmpty());
        QCOMPARE(s.link.DriverVersion, 0);
    }

    void openFailureNamesDeviceAndReason() {
        SimLink sim;
        sim.link.PortNumber = 4;
        sim.engine.setDeviceOverride(QStringLiteral("/dev/velora-no-such-port"));
        sim.engine.start(250);
        QVERIFY(!sim.link.run().PortOpen);
        QCOMPARE(sim.link.PortNumber, 1);
        QCOMPARE(sim.ui.messages.size(), 1);
        const QString text = sim.ui.messages[0].text;
        QVERIFY(text.startsWith(TextCatalogue::text(Language::English, Text::MsgCannotOpenPort) +
                                QLatin1Char('\n')));
        QVERIFY(text.contains(QStringLiteral("/dev/velora-no-such-port: ")));
        QVERIFY(!sim.engine.lastOpen().reason.isEmpty());
        QVERIFY(text.endsWith(sim.engine.lastOpen().reason));
        QCOMPARE(sim.ui.messages[0].caption,
                 TextCatalogue::text(Language::English, Text::MsgCannotOpenPortCaption));
        QVERIFY(sim.engine.timer1Active());
    }

    void monitorChainIdentifiesTheDriveFirst() {
        Session s;
        s.start(true);
        QVERIFY(s.tickUntil([&] { return s.link.run().MonitorRunning && s.heard.size() > 6; }));
        QCOMPARE(s.heard.value(0), QStringLiteral("0ma"));
        QCOMPARE(s.heard.value(1), QStringLiteral("0PR77"));
        QCOMPARE(s.heardCount(QStringLiteral("0PR77")), 1);
        QCOMPARE(s.link.DriverVersion, 110);
        QVERIFY(s.ui.messages.isEmpty());
        // The chain runs by itself: replies send the next poll without any tick.
        const int polls = s.heardCount(QStringLiteral("0ma"));
        QTest::qWait(150);
        QVERIFY(s.heardCount(QStringLiteral("0ma")) > polls + 3);
    }
    void monitorPollRefusedAgainSwitchesTheMonitorOff() {
        SimLink sim;
        sim.line.faults().errorCodes.insert(QStringLiteral("ma"), 3);
        sim.start(true, false);
        // One refusal is shown and polled past; the same refusal right after stops the monitor.
        const QString off =
            TextCatalogue::text(Language::English, Text::LinkDriveRefusedMonitorRequest);
        QVERIFY(QTest::qWaitFor([&] { return sim.ui.messages.size() == 2; }, 2000));
        QVERIFY(!sim.ui.messages[0].text.contains(off));
        QVERIFY(sim.ui.messages[1].text.endsWith(off));
        QVERIFY(!sim.link.RealTimeMonitor && sim.ui.realTimeMonitorShownOff);
        sim.ticks(4);
        QCOMPARE(sim.ui.messages.size(), 2);
        QCOMPARE(sim.heardCount(QStringLiteral("0ma")), 2);
    }
};

QTEST_GUILESS_MAIN(TestE2eSession)
#include "tst_e2e_session.moc"
