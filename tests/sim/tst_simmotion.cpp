#include "SimTestSupport.h"
#include "sim/Drive.h"

#include <QtTest>

#include <functional>

using namespace velora::sim;
using velora::sim::test::send;

namespace {

// Advances simulated time in 10 ms steps until done() holds; false if limitMs passes first.
bool runUntil(Drive& drive, int limitMs, const std::function<bool()>& done) {
    for (int t = 0; t < limitMs; t += 10) {
        if (done())
            return true;
        drive.advance(10);
    }
    return done();
}

bool statusBit(const Drive& drive, int bit) {
    return (drive.model().statusWord() >> bit) & 1;
}

void servoOn(Drive& drive) {
    QCOMPARE(send(drive, QStringLiteral("0SO")), QStringLiteral("0SO"));
}

}  // namespace

class TstSimMotion : public QObject {
    Q_OBJECT

private slots:
    // The positive jog starts and stops in the console window test against the simulated drive.
    void negativeJogRunsAtJogVelocityAndStops() {
        Drive drive(0, 110);
        QCOMPARE(send(drive, QStringLiteral("0PW15;12C")), QStringLiteral("0PW"));  // 300 rpm
        servoOn(drive);
        QCOMPARE(send(drive, QStringLiteral("0NJ")), QStringLiteral("0NJ"));
        drive.advance(600);
        MonitorValues m = drive.model().monitor();
        QCOMPARE(m.commandVelocity, -300);
        QVERIFY(qAbs(m.nowVelocity + 300) <= 1);
        QVERIFY(m.nowPosition < -1000);
        QVERIFY(statusBit(drive, DriveModel::RunMinusBit));

        QCOMPARE(send(drive, QStringLiteral("0JF")), QStringLiteral("0JF"));
        QVERIFY(runUntil(drive, 2000, [&] { return drive.model().monitor().nowVelocity == 0; }));
        drive.advance(300);
        m = drive.model().monitor();
        drive.advance(300);
        QCOMPARE(drive.model().monitor().nowPosition, m.nowPosition);
        QVERIFY(statusBit(drive, DriveModel::InpositionBit));
    }

    void stepMovesByItsParameter_data() {
        QTest::addColumn<QString>("code");
        QTest::addColumn<int>("target");
        QTest::newRow("S1") << "0S1" << -1000;
        QTest::newRow("S2") << "0S2" << 10000;
    }

    void stepMovesByItsParameter() {
        QFETCH(QString, code);
        QFETCH(int, target);
        Drive drive(0, 110);
        servoOn(drive);
        QCOMPARE(send(drive, code), code);
        drive.advance(50);
        QCOMPARE(drive.model().monitor().restPulses != 0, true);
        QVERIFY(runUntil(drive, 5000, [&] { return statusBit(drive, DriveModel::InpositionBit); }));
        drive.advance(500);
        QCOMPARE(drive.model().monitor().nowPosition, target);
        QCOMPARE(drive.model().monitor().restPulses, 0);
        // The torque it took is held as the peak until QP.
        const int peak = drive.model().monitor().torquePeak;
        QVERIFY(peak > 0 && peak >= qAbs(drive.model().monitor().torque));
        QCOMPARE(send(drive, QStringLiteral("0QP")), QStringLiteral("0QP"));
        drive.advance(100);
        QCOMPARE(drive.model().monitor().torquePeak, 0);
        // A second step goes on from there.
        QCOMPARE(send(drive, code), code);
        QVERIFY(runUntil(drive, 5000, [&] { return !drive.model().motion().busy(); }));
        QCOMPARE(drive.model().monitor().positionCommand, 2 * target);
    }

    void zeroReturnHomesAndAllowsTeaching() {
        Drive drive(0, 110);
        QCOMPARE(send(drive, QStringLiteral("0PW20;64")), QStringLiteral("0PW"));  // last run 100
        servoOn(drive);
        QCOMPARE(send(drive, QStringLiteral("0TP")), QStringLiteral("0ER3"));
        QCOMPARE(send(drive, QStringLiteral("0ZO")), QStringLiteral("0ZO"));
        drive.advance(100);
        QVERIFY(drive.model().monitor().commandVelocity < 0);  // parameter 28 = 0: negative
        QVERIFY(runUntil(drive, 5000, [&] { return drive.model().zeroReturnFinished(); }));
        drive.advance(500);
        const MonitorValues m = drive.model().monitor();
        QCOMPARE(m.nowPosition, 0);
        QVERIFY(m.decZPulses > 0 && m.decZPulses <= 10000 + 2 * 2500);
        QVERIFY(statusBit(drive, DriveModel::ZeroReturnFinishedBit));

        // Teaching stores the present position into the start point.
        QCOMPARE(send(drive, QStringLiteral("0SP7")), QStringLiteral("0SP"));
        QCOMPARE(send(drive, QStringLiteral("0S0")), QStringLiteral("0S0"));
        QVERIFY(runUntil(drive, 3000, [&] { return statusBit(drive, DriveModel::InpositionBit); }));
        drive.advance(500);
        QCOMPARE(send(drive, QStringLiteral("0TP")), QStringLiteral("0TP"));
        QCOMPARE(send(drive, QStringLiteral("0TR7")).mid(8, 8), QStringLiteral("000003E8"));

        QCOMPARE(send(drive, QStringLiteral("0SF")), QStringLiteral("0SF"));
        QCOMPARE(send(drive, QStringLiteral("0RT")), QStringLiteral("<none>"));
        QVERIFY(!drive.model().zeroReturnFinished());
    }

    void pointTableRunsThroughItsPoints() {
        Drive drive(0, 110);
        servoOn(drive);
        QCOMPARE(send(drive, QStringLiteral("0ON")), QStringLiteral("0ON"));
        QList<int> visited;
        qint32 furthest = 0;
        const bool ended = runUntil(drive, 20000, [&] {
            const MonitorValues m = drive.model().monitor();
            if (!statusBit(drive, DriveModel::PointMoveBit))
                return true;
            if (visited.isEmpty() || visited.last() != m.nowPoint)
                visited << m.nowPoint;
            furthest = qMax(furthest, m.nowPosition);
            return false;
        });
        QVERIFY(ended);
        QCOMPARE(visited, (QList<int>{0, 1, 2, 3}));
        QVERIFY(furthest > 19900 && furthest <= 20000);
        drive.advance(500);
        QCOMPARE(drive.model().monitor().nowPosition, 0);  // point 3 is absolute 0
        // Once the run has ended the motion commands are accepted again.
        QCOMPARE(send(drive, QStringLiteral("0PJ")), QStringLiteral("0PJ"));
    }

    void emergencyStopHoldsUntilAlarmReset() {
        Drive drive(0, 110);
        servoOn(drive);
        QCOMPARE(send(drive, QStringLiteral("0PJ")), QStringLiteral("0PJ"));
        drive.advance(300);
        QCOMPARE(send(drive, QStringLiteral("0ES")), QStringLiteral("0ES"));
        drive.advance(10);
        QCOMPARE(drive.model().monitor().commandVelocity, 0);
        QVERIFY(statusBit(drive, DriveModel::EmergencyStopBit));
        QVERIFY(!statusBit(drive, DriveModel::ServoOnBit));
        QCOMPARE(send(drive, QStringLiteral("0SO")), QStringLiteral("0ER3"));
        QCOMPARE(send(drive, QStringLiteral("0AR")), QStringLiteral("0AR"));
        QVERIFY(!statusBit(drive, DriveModel::EmergencyStopBit));
        servoOn(drive);
    }
};

QTEST_GUILESS_MAIN(TstSimMotion)
#include "tst_simmotion.moc"
