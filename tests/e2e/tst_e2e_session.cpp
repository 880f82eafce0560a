#include "app/TextCatalogue.h"
#include "e2e/SimLink.h"
#include "monitor/RealTimeMonitor.h"
#include "params/ParamCatalogue.h"
#include "params/ParamTransfer.h"

#include <QtTest>

using namespace velora;
using velora::test::SimLink;

namespace {

// The link with the monitor chain and the parameter transfer, as the application runs them.
struct Session : SimLink {
    Session() {
        InitParamTables(global.Params);
        ui.answerRetry = false;
    }
    [[nodiscard]] qint32 driveParam(int n) {
        return line.bus().drive(0)->model().memory().param(n);
    }
    [[nodiscard]] qint32 storedParam(int n) {
        return line.bus().drive(0)->model().memory().nonVolatile().params[static_cast<std::size_t>(
            n)];
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

// The monitor chain and the parameter transfer against the simulated drive.
class TestE2eSession : public QObject {
    Q_OBJECT
private slots:
    void monitorChainIdentifiesTheDriveFirst() {
        Session s;
        s.start(true);
        QVERIFY(s.tickUntil([&] { return s.link.MonitorRunning && s.heard.size() > 6; }));
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

    void refusalReasonComesFromTheMonitoredStatus() {
        Session s;
        s.start(true);
        QVERIFY(s.tickUntil([&] { return s.link.MonitorRunning; }));
        s.engine.PostCommand(QStringLiteral("0PJ"));  // jog while the servo is off
        QVERIFY(s.tickUntil([&] { return !s.ui.messages.isEmpty(); }));
        QCOMPARE(s.ui.messages[0].text, TextCatalogue::text(0, 1799) + QStringLiteral(" 3:\n") +
                                            TextCatalogue::text(0, 1803) + QStringLiteral("\n\n") +
                                            TextCatalogue::text(0, 1813));
    }

    void readAllThenWriteOne_data() {
        QTest::addColumn<bool>("nonVolatile");
        QTest::newRow("PW") << true;
        QTest::newRow("PT") << false;
    }
    void readAllThenWriteOne() {
        QFETCH(bool, nonVolatile);
        Session s;
        s.start(true);
        QVERIFY(s.tickUntil([&] { return s.link.MonitorRunning; }));
        s.params.readAll();
        QVERIFY(s.tickUntil([&] { return s.global.Params.ParamsLoaded; }));
        QVERIFY(!s.link.ParamTransferActive);
        for (int n = 0; n < 120; ++n)
            QCOMPARE(s.global.Params.ParamValue[n], s.driveParam(n));

        const qint32 stored = s.storedParam(21);
        const qint32 jog = s.global.Params.ParamValue[21] == 300 ? 250 : 300;
        s.global.Params.ParamValue[21] = jog;
        s.global.Params.ParamChanged[21] = true;
        s.link.NonVolatileWrite[0] = nonVolatile;
        QVERIFY(s.params.writeChanged());
        QVERIFY(s.tickUntil([&] { return !s.global.Params.ParamChanged[21]; }));
        const QString code = nonVolatile ? QStringLiteral("PW") : QStringLiteral("PT");
        QCOMPARE(s.heardCount(QStringLiteral("0") + code + QStringLiteral("15;") +
                              QString::number(jog, 16).toUpper()),
                 1);
        QCOMPARE(s.driveParam(21), jog);
        QCOMPARE(s.storedParam(21), nonVolatile ? jog : stored);
        QVERIFY(s.ui.messages.isEmpty());  // 21 needs no restart
    }
};

QTEST_GUILESS_MAIN(TestE2eSession)
#include "tst_e2e_session.moc"
