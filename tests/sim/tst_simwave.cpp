#include "SimTestSupport.h"
#include "sim/Drive.h"

#include <QtTest>

using namespace velora::sim;
using velora::sim::test::send;
using velora::sim::test::signedField;

namespace {

struct Sample {
    int velocity = 0;
    int torque = 0;
    int logic = 0;
};

// The samples of a wd reply text, checking the record layout on the way.
QList<Sample> decodeRecord(const QString& wd) {
    QList<Sample> samples;
    const QString payload = wd.mid(3);
    for (int i = 0; i + 12 <= payload.size(); i += 12) {
        const QString r = payload.mid(i, 12);
        if (r.mid(9) != QLatin1String("000") ||
            (r[8] != QLatin1Char('0') && r[8] != QLatin1Char('1'))) {
            return {};
        }
        samples.append({signedField(r.mid(0, 4)), signedField(r.mid(4, 4)), r[8].digitValue()});
    }
    return samples;
}

// Advances until the drive has sent something by itself; that text, or empty after limitMs.
QString nextUnsolicited(Drive& drive, int limitMs) {
    for (int t = 0; t < limitMs; ++t) {
        drive.advance(1);
        const QStringList sent = drive.takeUnsolicited();
        if (!sent.isEmpty())
            return sent.join(QLatin1Char('|'));
    }
    return {};
}

}  // namespace

class TstSimWave : public QObject {
    Q_OBJECT

private slots:
    void manualTriggerSendsRecordAfterTrigger() {
        Drive drive(4, 110);
        QCOMPARE(send(drive, QStringLiteral("4wm230080")), QStringLiteral("4wm"));
        QCOMPARE(nextUnsolicited(drive, 5), QStringLiteral("4wr"));
        // 100 ms/div: 4 ms per sample, 124 samples after the trigger.
        drive.advance(400);
        QVERIFY(drive.takeUnsolicited().isEmpty());
        const QString wd = nextUnsolicited(drive, 200);
        QVERIFY(wd.startsWith(QLatin1String("4wd")));
        QCOMPARE(wd.size(), 3 + 250 * 12);
        QCOMPARE(decodeRecord(wd).size(), 250);
        QCOMPARE(drive.wave().state(), WaveCapture::State::Idle);
    }

    void triggerLandsAtRequestedPosition_data() {
        QTest::addColumn<QStringList>("before");  // sent before arming
        QTest::addColumn<QString>("arm");
        QTest::addColumn<QStringList>("after");  // sent after arming
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("channel");
        QTest::addColumn<bool>("rising");
        QTest::addColumn<int>("level");

        const QStringList none;
        const QStringList jog{QStringLiteral("0PJ")};
        QTest::newRow("velocity + up at 20 %, 1 ms")
            << none << "0wm000033" << jog << 50 << "velocity" << true << 10;
        QTest::newRow("velocity + up at 80 %, 2 ms")
            << none << "0wm1000CD" << jog << 200 << "velocity" << true << 10;
        QTest::newRow("velocity - down, negative jog")
            << none << "0wm200380" << QStringList{QStringLiteral("0NJ")} << 125 << "velocity"
            << false << -10;
        QTest::newRow("velocity + down, jog stopped")
            << QStringList{QStringLiteral("0PJ"), QStringLiteral("wait")} << "0wm200180"
            << QStringList{QStringLiteral("0JF")} << 125 << "velocity" << false << 10;
        QTest::newRow("torque + up") << none << "0wm210080" << jog << 125 << "torque" << true << 10;
        QTest::newRow("logic FIN + down")
            << none << "0wm220180" << jog << 125 << "logic" << false << 0;
    }

    void triggerLandsAtRequestedPosition() {
        QFETCH(QStringList, before);
        QFETCH(QString, arm);
        QFETCH(QStringList, after);
        QFETCH(int, index);
        QFETCH(QString, channel);
        QFETCH(bool, rising);
        QFETCH(int, level);

        Drive drive(0, 110);
        QCOMPARE(send(drive, QStringLiteral("0SO")), QStringLiteral("0SO"));
        drive.advance(200);
        for (const QString& c : before) {
            if (c == QLatin1String("wait")) {
                drive.advance(1000);
            } else {
                QCOMPARE(send(drive, c), c);
            }
        }
        QCOMPARE(send(drive, arm), QStringLiteral("0wm"));
        // Nothing happens while the signals stand still.
        drive.advance(100);
        QVERIFY(drive.takeUnsolicited().isEmpty());
        for (const QString& c : after)
            QCOMPARE(send(drive, c), c);
        QCOMPARE(nextUnsolicited(drive, 2000), QStringLiteral("0wr"));
        const QString wd = nextUnsolicited(drive, 20000);
        const QList<Sample> samples = decodeRecord(wd);
        QCOMPARE(samples.size(), 250);

        const auto value = [&](int i) {
            const Sample& s = samples.at(i);
            return channel == QLatin1String("velocity") ? s.velocity
                   : channel == QLatin1String("torque") ? s.torque
                                                        : s.logic;
        };
        const int previous = value(index - 1);
        const int current = value(index);
        const bool crossed = rising ? (previous < level && current >= level)
                                    : (previous > level && current <= level);
        QVERIFY2(crossed, qPrintable(QStringLiteral("%1 -> %2").arg(previous).arg(current)));
    }

    void cancelledCaptureSendsNothing() {
        Drive drive(0, 110);
        QCOMPARE(send(drive, QStringLiteral("0SO")), QStringLiteral("0SO"));
        QCOMPARE(send(drive, QStringLiteral("0wm200080")), QStringLiteral("0wm"));
        QCOMPARE(send(drive, QStringLiteral("0wq")), QStringLiteral("0wq"));
        QCOMPARE(send(drive, QStringLiteral("0PJ")), QStringLiteral("0PJ"));
        QCOMPARE(nextUnsolicited(drive, 3000), QString());
    }

    void settingsAreTakenWithoutArming() {
        Drive drive(0, 110);
        QCOMPARE(send(drive, QStringLiteral("0wt5123CD")), QStringLiteral("0wt"));
        QCOMPARE(drive.wave().settings().triggerPosition, 0xCD);
        QCOMPARE(drive.wave().state(), WaveCapture::State::Idle);
        QCOMPARE(nextUnsolicited(drive, 100), QString());
    }
};

QTEST_GUILESS_MAIN(TstSimWave)
#include "tst_simwave.moc"
