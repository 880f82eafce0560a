#include "app/TextCatalogue.h"
#include "e2e/SimLink.h"

#include <QtTest>

using namespace velora;
using velora::test::SimLink;

namespace {
QString en(int id) {
    return TextCatalogue::text(0, id);
}
}  // namespace

// The link against a simulated drive, through real serial back-ends.
class TestE2eLink : public QObject {
    Q_OBJECT
private slots:
    void backEnds_data() {
        QTest::addColumn<int>("backEnd");
        QTest::newRow("RS-232C") << int(BackEnd::Rs232);
        QTest::newRow("USB-RS232C") << int(BackEnd::UsbSerial);
    }

    void exchangeAndResendAfterDroppedReply_data() { backEnds_data(); }
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

    void retryQuestionAfterFiveSilentResends() {
        SimLink sim;
        sim.line.faults().dropCodes.insert(QStringLiteral("AD"), sim::FaultPlan::Forever);
        sim.start(false);
        sim.engine.SendCommand(QStringLiteral("0AD"));
        sim.ticks(10);
        QCOMPARE(sim.heardCount(QStringLiteral("0AD")), 6);
        QVERIFY(sim.ui.messages.isEmpty());
        sim.ui.answerRetry = true;
        sim.tick();
        QCOMPARE(sim.ui.messages.size(), 1);
        QCOMPARE(sim.ui.messages[0].text, en(1704));
        QVERIFY(!sim.ui.messages[0].timer1ActiveWhileOpen);
        QCOMPARE(sim.heardCount(QStringLiteral("0AD")), 7);  // Retry sends at once
        sim.line.faults().dropCodes.clear();
        sim.ticks(2);
        QVERIFY(sim.waitForReply());
        QVERIFY(sim.ui.controlsEnabled);
    }

    void linkLossAfterCablePulledAndRecovery() {
        SimLink sim;
        sim.start(true);
        sim.ticks(4);
        QCOMPARE(sim.link.MissedPolls, 0);  // every slot poll answered
        QVERIFY(sim.heardCount(QStringLiteral("0ma")) >= 2);
        sim.link.MonitorRunning = true;
        sim.line.setCablePulled(true);
        sim.ticks(6);
        QCOMPARE(sim.link.MissedPolls, 3);
        QVERIFY(sim.link.MonitorRunning);
        QCOMPARE(sim.ui.consoleDisabled, 1);  // only the start-up lock so far
        sim.ticks(2);                         // the fourth unanswered poll
        QVERIFY(!sim.link.MonitorRunning);
        QCOMPARE(sim.ui.consoleDisabled, 2);
        sim.line.setCablePulled(false);
        sim.ticks(2);
        QCOMPARE(sim.link.MissedPolls, 0);
        QVERIFY(sim.ui.messages.isEmpty());  // a pulled cable is no reason for a message box
    }

    void refusedCommandShowsReason() {
        SimLink sim;
        sim.start(false);
        // What the monitor reported: servo off.
        sim.link.RealTimeMonitor = true;
        sim.link.MonitorRunning = true;
        sim.link.ServoStatus = 0;
        sim.link.WaveState = 0;
        sim.engine.SendCommand(QStringLiteral("0PJ"));
        QVERIFY(QTest::qWaitFor([&] { return !sim.ui.messages.isEmpty(); }, 2000));
        QCOMPARE(sim.ui.messages[0].text,
                 en(1799) + QStringLiteral(" 3:\n") + en(1803) + QStringLiteral("\n\n") + en(1813));
        QVERIFY(QTest::qWaitFor([&] { return sim.heardCount(QStringLiteral("0ma")) > 0; }, 2000));
    }

    void unknownCodeAndBadDataAnswerErrors() {
        SimLink sim;
        sim.start(false);
        sim.engine.SendCommand(QStringLiteral("0XX"));
        QVERIFY(QTest::qWaitFor([&] { return sim.ui.messages.size() == 1; }, 2000));
        QCOMPARE(sim.ui.messages[0].text, en(1799) + QStringLiteral(" 0:\n") + en(1800));
        sim.engine.SendCommand(QStringLiteral("0PW5;7FFFFFFF"));
        QVERIFY(QTest::qWaitFor([&] { return sim.ui.messages.size() == 2; }, 2000));
        QCOMPARE(sim.ui.messages[1].text, en(1799) + QStringLiteral(" 1:\n") + en(1801));
    }

    void broadcastGetsNoReplyAndIsNotResent() {
        sim::SimOptions options = SimLink::fastLine();
        options.axes = {0, 3};
        SimLink sim(BackEnd::Rs232, options);
        sim.start(false);
        sim.engine.SendCommand(QStringLiteral("FSO"));
        sim.engine.endOfTransmission();
        sim.ticks(6);
        QCOMPARE(sim.heardCount(QStringLiteral("FSO")), 1);
        QCOMPARE(sim.ui.messages.size(), 1);
        QCOMPARE(sim.ui.messages[0].caption, en(1718));
        QVERIFY(sim.ui.comText[1].isEmpty());
        // Both drives carried it out: each answers its own status read.
        for (const int axis : {0, 3}) {
            sim.link.AxisNumber = axis;
            sim.engine.SendCommand(QStringLiteral("%1PR77").arg(axis));
            QVERIFY(sim.waitForReply());
        }
        QVERIFY(sim.line.bus().drive(0)->model().statusWord() & 1U);
        QVERIFY(sim.line.bus().drive(3)->model().statusWord() & 1U);
    }

    void driveAtAnotherRateStaysSilent() {
        SimLink sim;
        sim.link.BaudRate = QStringLiteral("19200");
        sim.start(false, false);
        sim.engine.SendCommand(QStringLiteral("0PR77"));
        QVERIFY(!sim.waitForReply(300));
        QCOMPARE(sim.heardCount(QStringLiteral("0PR77")), 1);
        sim.link.BaudRate = QStringLiteral("9600");
        QVERIFY(sim.engine.reopen().ok);
        sim.ticks(2);
        QVERIFY(sim.waitForReply());
    }
};

QTEST_GUILESS_MAIN(TestE2eLink)
#include "tst_e2e_link.moc"
