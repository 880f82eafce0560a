#include "SimTestSupport.h"
#include "sim/Drive.h"

#include <QtTest>

using namespace velora::sim;
using velora::sim::test::payloadField;
using velora::sim::test::send;
using velora::sim::test::signedField;

class TstSimCommands : public QObject {
    Q_OBJECT

private slots:
    void parameterWriteReadsBack_data() {
        QTest::addColumn<QString>("write");
        QTest::addColumn<QString>("read");
        QTest::addColumn<QString>("reply");
        // clang-format off
        QTest::newRow("negative 32-bit")       << "1PW6;FFFFFFFB" << "1PR6"  << "1PRFFFFFFFB";
        QTest::newRow("RAM only, 03 at 65536") << "1PT3;10000"    << "1PR3"  << "1PR00010000";
        QTest::newRow("lower-case hex taken")  << "1PW3D;ff"      << "1PR3D" << "1PR000000FF";
        QTest::newRow("version cannot change") << "1PW77;64"      << "1PR77" << "1PR0000006E";
        // clang-format on
    }

    void parameterWriteReadsBack() {
        QFETCH(QString, write);
        QFETCH(QString, read);
        QFETCH(QString, reply);
        Drive drive(1, 110);
        QCOMPARE(send(drive, write), write.left(3));
        QCOMPARE(send(drive, read), reply);
    }

    void ramOnlyWritesAreLostOnReset() {
        Drive drive(0, 110);
        QCOMPARE(send(drive, QStringLiteral("0PW15;1F4")), QStringLiteral("0PW"));
        QCOMPARE(send(drive, QStringLiteral("0PT16;3E8")), QStringLiteral("0PT"));
        QCOMPARE(send(drive, QStringLiteral("0TT0;0;7B;0;0;0")), QStringLiteral("0TT"));
        QCOMPARE(send(drive, QStringLiteral("0RT")), QStringLiteral("<none>"));
        QCOMPARE(send(drive, QStringLiteral("0PR15")), QStringLiteral("0PR000001F4"));
        QCOMPARE(send(drive, QStringLiteral("0PR16")), QStringLiteral("0PR00000064"));
        QCOMPARE(send(drive, QStringLiteral("0TR0")).mid(3, 13), QStringLiteral("0010,00002710"));
        // EW stores RAM, so a RAM-only write then survives the reset.
        QCOMPARE(send(drive, QStringLiteral("0PT16;3E8")), QStringLiteral("0PT"));
        QCOMPARE(send(drive, QStringLiteral("0EW")), QStringLiteral("0EW"));
        QCOMPARE(send(drive, QStringLiteral("0RT")), QStringLiteral("<none>"));
        QCOMPARE(send(drive, QStringLiteral("0PR16")), QStringLiteral("0PR000003E8"));
    }

    void errorClasses_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("reply");
        const QString illegal = QStringLiteral("0ER0");
        const QString badData = QStringLiteral("0ER1");
        QTest::newRow("unknown code") << "0XX" << illegal;
        QTest::newRow("code case matters") << "0MA" << illegal;
        QTest::newRow("data where none belongs") << "0SO1" << illegal;
        QTest::newRow("missing number") << "0PR" << illegal;
        QTest::newRow("non-hex number") << "0PRG" << illegal;
        QTest::newRow("one field for two") << "0PW5" << illegal;
        QTest::newRow("too few point fields") << "0TW0;0;0;0" << illegal;
        QTest::newRow("wm without position") << "0wm2000" << illegal;
        QTest::newRow("text over 30 characters")
            << "0PW5;" + QString(30, QLatin1Char('0')) << illegal;
        QTest::newRow("parameter 120") << "0PR78" << badData;
        QTest::newRow("more than 32 bits") << "0PW5;123456789" << badData;
        QTest::newRow("below the minimum") << "0PW2;0" << badData;
        QTest::newRow("69 holds only 0") << "0PW45;1" << badData;
        QTest::newRow("start point 64") << "0SP40" << badData;
        QTest::newRow("velocity No. 10") << "0VSA" << badData;
        QTest::newRow("point 64") << "0TW40;0;0;0;0;0" << badData;
        QTest::newRow("position 100000000") << "0TW0;0;5F5E100;0;0;0" << badData;
        QTest::newRow("velocity 4501") << "0VW0;1195" << badData;
        QTest::newRow("velocity -1 in 16 bits") << "0VW0;FFFF" << badData;
        QTest::newRow("ATC 0") << "0CW0;0" << badData;
        QTest::newRow("torque 15001") << "0QW1;3A99" << badData;
        QTest::newRow("time scale 6") << "0wm600080" << badData;
    }

    void errorClasses() {
        QFETCH(QString, command);
        QFETCH(QString, reply);
        Drive drive(0, 110);
        const QString before = send(drive, QStringLiteral("0pa"));
        QCOMPARE(send(drive, command), reply);
        QCOMPARE(send(drive, QStringLiteral("0pa")), before);  // nothing was written
    }

    void refusals_data() {
        QTest::addColumn<QStringList>("setup");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("reply");
        const QStringList motionCodes =
            QStringLiteral("OF ON ZO ZF VO VF PJ NJ JF S0 S1 S2 S3").split(QLatin1Char(' '));
        const QStringList servoOn = {QStringLiteral("0SO")};
        const QStringList running = {QStringLiteral("0SO"), QStringLiteral("0ON")};
        for (const QString& code : motionCodes) {
            QTest::addRow("%s servo off", qPrintable(code))
                << QStringList() << "0" + code << "0ER3";
            QTest::addRow("%s table running", qPrintable(code)) << running << "0" + code << "0ER3";
            QTest::addRow("%s servo on", qPrintable(code)) << servoOn << "0" + code << "0" + code;
        }
        const QStringList alarm{QStringLiteral("alarm")};
        const QStringList reset{QStringLiteral("alarm"), QStringLiteral("0ES"),
                                QStringLiteral("0AR")};
        // clang-format off
        QTest::newRow("TP before zero return") << servoOn << "0TP"  << "0ER3";
        QTest::newRow("RT servo on")           << servoOn << "0RT"  << "0ER3";
        QTest::newRow("SO in alarm")           << alarm   << "0SO"  << "0ER3";
        QTest::newRow("SO after alarm reset")  << reset   << "0SO"  << "0SO";
        QTest::newRow("SP while running")      << running << "0SP3" << "0SP";
        // clang-format on
    }

    void refusals() {
        QFETCH(QStringList, setup);
        QFETCH(QString, command);
        QFETCH(QString, reply);
        Drive drive(0, 110);
        for (const QString& step : setup) {
            if (step == QLatin1String("alarm")) {
                drive.model().raiseAlarm(AlarmState::OverHeat);
            } else {
                QCOMPARE(send(drive, step), step);
            }
        }
        drive.advance(5);
        QCOMPARE(send(drive, command), reply);
    }

    void monitorDecodesToDriveState() {
        Drive drive(0, 110);
        QCOMPARE(send(drive, QStringLiteral("0SO")), QStringLiteral("0SO"));
        QCOMPARE(send(drive, QStringLiteral("0S2")), QStringLiteral("0S2"));  // +10000 pulses
        drive.advance(200);

        const QString ma = send(drive, QStringLiteral("0ma"));
        QCOMPARE(ma.size(), 3 + 95);
        const MonitorValues m = drive.model().monitor();
        const qint32 now = signedField(payloadField(ma, 1, 8));
        const qint32 command = signedField(payloadField(ma, 9, 8));
        QCOMPARE(now, m.nowPosition);
        QCOMPARE(command, m.positionCommand);
        QCOMPARE(signedField(payloadField(ma, 17, 8)), command - now);
        QCOMPARE(signedField(payloadField(ma, 25, 8)), 10000 - command);
        QVERIFY(now > 0 && command > now);
        QCOMPARE(signedField(payloadField(ma, 33, 4)), m.nowVelocity);
        QCOMPARE(signedField(payloadField(ma, 37, 4)), 100);  // jog velocity, parameter 21
        QCOMPARE(signedField(payloadField(ma, 51, 4)), 15000);
        const int status = payloadField(ma, 67, 4).toInt(nullptr, 16);
        QCOMPARE(status, m.statusWord);
        QVERIFY(status & (1 << DriveModel::RunPlusBit));
        QVERIFY(status & (1 << DriveModel::CommandPlusBit));
        QVERIFY(!(status & (1 << DriveModel::InpositionBit)));
        QCOMPARE(payloadField(ma, 71, 21), QString(21, QLatin1Char('0')));
        QVERIFY(signedField(payloadField(ma, 92, 4)) > 0);  // torque peak

        drive.model().raiseAlarm(AlarmState::OverCurrent);
        const QString alarmed = send(drive, QStringLiteral("0ma"));
        const int alarmStatus = payloadField(alarmed, 67, 4).toInt(nullptr, 16);
        QVERIFY(alarmStatus & (1 << DriveModel::AlarmBit));
        QVERIFY(!(alarmStatus & (1 << DriveModel::ServoOnBit)));
        QVERIFY(payloadField(alarmed, 63, 4).toInt(nullptr, 16) & (1 << DriveModel::AlarmOutBit));
    }

    void olderVersionHasNoTorquePeak() {
        Drive drive(2, 106);
        QCOMPARE(send(drive, QStringLiteral("2PR77")), QStringLiteral("2PR0000006A"));
        QCOMPARE(send(drive, QStringLiteral("2ma")).size(), 3 + 91);
        for (const char* code : {"2QP", "2EW", "2ED", "2EP"}) {
            QCOMPARE(send(drive, QString::fromLatin1(code)), QStringLiteral("2ER0"));
        }
    }

    void alarmDataAndHistory() {
        Drive drive(0, 110);
        drive.model().raiseAlarm(AlarmState::SystemError);
        drive.model().raiseAlarm(AlarmState::OverCurrent);
        drive.model().raiseAlarm(AlarmState::SystemError);  // still active: not recorded again
        QCOMPARE(send(drive, QStringLiteral("0AD")), QStringLiteral("0AD140503000000000000"));
        QCOMPARE(send(drive, QStringLiteral("0AR")), QStringLiteral("0AR"));
        QCOMPARE(send(drive, QStringLiteral("0AD")), QStringLiteral("0AD000503000000000000"));
        // Nine more alarms: the history keeps the newest eight.
        for (int n = 1; n <= 8; ++n) {
            drive.model().raiseAlarm(n);
            drive.model().resetAlarms();
        }
        drive.model().raiseAlarm(AlarmState::EncoderError);
        QCOMPARE(send(drive, QStringLiteral("0AD")), QStringLiteral("0AD020208070605040302"));
    }
};

QTEST_GUILESS_MAIN(TstSimCommands)
#include "tst_simcommands.moc"
