#include "core/shared/Global.h"
#include "core/wave/WaveCapture.h"
#include "core/wave/WaveFile.h"
#include "core/wave/WaveScale.h"
#include "support/LinkRig.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace velora;
using namespace Qt::StringLiterals;

namespace {

// A record whose sample i is velocity 10i - 1250, torque -5i and logic high on odd samples.
QString record(int samples = WaveStore::SampleCount) {
    QString text = u"1wd"_s;
    for (int i = 0; i < samples; ++i) {
        const auto hex = [](int v) {
            return QString::number(static_cast<quint16>(v), 16).toUpper().rightJustified(4, u'0');
        };
        text += hex(10 * i - 1250) + hex(-5 * i) + QString::number(i % 2) + u"000"_s;
    }
    return text;
}

}  // namespace

// The wave subsystem without a window: the arithmetic of the display, the capture protocol
// over a fake port and the .csv file.
class TestWave : public QObject {
    Q_OBJECT
private slots:
    void triggerPositionEntry_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("shownPercent");
        QTest::newRow("50 %") << u"50"_s << 128 << 50;
        QTest::newRow("below 20 %") << u"10"_s << 0x33 << 20;
        QTest::newRow("above 80 %") << u"95"_s << 0xCD << 80;
        // Rounded after the conversion: 37.5 % is 96 exactly; 20.3 % is 51.97, not 20 % (51).
        QTest::newRow("fraction converted") << u"37.5"_s << 96 << 38;
        QTest::newRow("fraction near 20 %") << u"20.3"_s << 52 << 20;
        QTest::newRow("below by a fraction") << u"19.9"_s << 0x33 << 20;
        QTest::newRow("not numeric keeps") << u"abc"_s << 100 << 39;
    }
    void triggerPositionEntry() {
        QFETCH(QString, typed);
        QFETCH(int, position);
        QFETCH(int, shownPercent);
        QCOMPARE(wave::triggerPositionFromText(typed, 100), position);
        QCOMPARE(wave::percentFromTriggerPosition(position), shownPercent);
    }

    void displayArithmetic() {
        // Ties to even both ways: 12.5 % -> 32, 32 -> 12.5 % -> 12.
        QCOMPARE(wave::triggerPositionFromPercent(12.5), 32);
        QCOMPARE(wave::percentFromTriggerPosition(32), 12);
        QCOMPARE(wave::triggerPositionFromFraction(1.0), 204);  // the mouse stops at 80 %
        // Zero at 50 % with 50 rpm/div: the edges read +-150 rpm.
        const double velocitySpan = wave::fullScale(0, 2);
        QCOMPARE(wave::valueAt(0.0, velocitySpan, 50), 150.0);
        QCOMPARE(wave::valueAt(1.0, velocitySpan, 50), -150.0);
        // Torque 20.0 % at 20 %/div: one of six divisions above the zero line.
        QCOMPARE(wave::yFraction(200, wave::fullScale(1, 1), 50), 0.5 - 1.0 / 6);
        QCOMPARE(wave::yFraction(0, velocitySpan, 80), 0.2);
        QCOMPARE(wave::zeroLevelFromText(u"120"_s, 40), 100);
        QCOMPARE(wave::zeroLevelFromText(u"-3"_s, 40), 0);
        QCOMPARE(wave::zeroLevelFromText(u"abc"_s, 40), 40);
        QCOMPARE(wave::zeroLevelFromFraction(0.25), 75);
        // The previous record's levels lie 15 of 750 units lower.
        QCOMPARE(wave::logicYFraction(1, true), 0.2);
        QCOMPARE(wave::logicYFraction(2, false), 0.82);
        QCOMPARE(wave::sampleMs(2), 4.0);
    }

    void captureProtocol_data() {
        QTest::addColumn<BackEnd>("backEnd");
        QTest::newRow("RS-232C") << BackEnd::Rs232;
        QTest::newRow("USB-RS232C") << BackEnd::UsbSerial;
    }
    void captureProtocol() {
        QFETCH(BackEnd, backEnd);
        test::LinkRig rig(backEnd);
        Global global;
        global.WaveMon.TimeScale = 2;
        WaveCapture capture(rig.engine, global);
        rig.engine.setMonitorRunning(true);

        // With the monitor on, the start waits for the chain's next turn.
        capture.run();
        QCOMPARE(rig.state.run().QueuedCommand, u"1wm200080"_s);
        QVERIFY(rig.sent().isEmpty());
        rig.engine.SendCommand(rig.state.run().QueuedCommand);
        rig.engine.dropQueuedCommand();
        rig.port->frames.clear();
        rig.port->reply(u"1wm"_s);
        QCOMPARE(rig.state.run().Wave, WaveState::Armed);
        QVERIFY(rig.ui.readingShown);

        // Nothing leaves while the capture runs, not even after an error reply.
        rig.port->reply(u"1ER1"_s);
        QVERIFY(rig.sent().isEmpty());
        QCOMPARE(rig.state.run().Wave, WaveState::Armed);

        rig.port->transmitEnable = true;
        const int spoolClears = rig.port->spoolClears;
        rig.port->reply(u"1wr"_s);
        QCOMPARE(rig.state.run().Wave, WaveState::Triggered);
        // The USB adapter meets the long record with an empty spool and the line released.
        const bool usb = backEnd == BackEnd::UsbSerial;
        QCOMPARE(rig.port->spoolClears > spoolClears, usb);
        QCOMPARE(rig.port->transmitEnable, !usb);
        rig.port->reply(record());
        QCOMPARE(rig.state.run().Wave, WaveState::Idle);
        QVERIFY(!rig.ui.readingShown);
        QCOMPARE(global.Wave.sample(1, 249, 1), qint16(-1245));
        QCOMPARE(global.Wave.logic(1, 249), quint16(1));
        // The chain restarts even with the monitor off.
        QCOMPARE(rig.sent(), QStringList{u"1ma"_s});

        // A field that is not a number spoils the record; a short one reads its missing
        // samples as 0.
        rig.state.RealTimeMonitor = false;
        rig.engine.setWaveState(WaveState::Triggered);
        rig.port->reply(record(100).replace(3 + 8, 1, u'x'));
        QCOMPARE(global.Wave.sample(1, 150, 0), qint16(250));  // nothing of it stored
        rig.engine.setWaveState(WaveState::Triggered);
        rig.port->reply(record(100));
        QCOMPARE(global.Wave.sample(2, 249, 1), qint16(-1245));
        QCOMPARE(global.Wave.sample(1, 150, 0), qint16(0));
        QCOMPARE(global.Wave.logic(1, 1), quint16(1));

        // Trigger settings go out only with the monitor running.
        rig.engine.setMonitorRunning(false);
        QVERIFY(!capture.sendTriggerSettings());
    }

    void fileBytes() {
        QTemporaryDir dir;
        WaveStore store;
        for (int i = 0; i < WaveStore::SampleCount; ++i) {
            const auto n = static_cast<std::size_t>(i);
            store.WaveSamples[1][n] = {static_cast<qint16>(i == 0 ? -12 : -1500 + i),
                                       static_cast<qint16>(i == 0 ? 35 : i)};
            store.WaveLogic[1][n] = static_cast<quint16>(i % 2);
            store.WaveSamples[2][n] = {7, -7};
        }
        WaveFile::Settings settings;
        settings.TrigPosPercent = 50;
        const QString path = dir.filePath(u"w.csv"_s);
        QCOMPARE(WaveFile::write(path, settings, store), WaveFile::Status::Ok);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QCOMPARE(bytes.count("\r\n"), WaveFile::LineCount);
        QVERIFY(
            bytes.startsWith("Orvix-Servo Wave Data File\r\n0,0,0,0\r\n2,50\r\n1,50\r\n"
                             "2,50\r\n-12,35,0\r\n-1499,1,1\r\n"));
        QVERIFY(bytes.endsWith("\r\n7,-7,0\r\n"));
    }

    void brokenFiles_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<WaveFile::Status>("status");
        QTest::addColumn<int>("line");
        const QByteArray head = "Orvix-Servo Wave Data File\r\n0,0,0,0\r\n2,50\r\n1,50\r\n2,50\r\n";
        QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0", 11)
                                << WaveFile::Status::Identification << 0;
        QTest::newRow("truncated") << head + "1,2,0\r\n3,4,1\r\n"
                                   << WaveFile::Status::Malformed << 8;
        QTest::newRow("two-digit index") << QByteArray("Orvix-Servo Wave Data File\r\n10,0,0,0\r\n")
                                         << WaveFile::Status::Malformed << 2;
        QTest::newRow("text for a sample") << head + "1,2,0\r\nabc,4,1\r\n"
                                           << WaveFile::Status::Malformed << 7;
        QTest::newRow("sample without logic") << head + "1,2\r\n"
                                              << WaveFile::Status::Malformed << 6;
    }
    void brokenFiles() {
        QFETCH(QByteArray, content);
        QFETCH(WaveFile::Status, status);
        QFETCH(int, line);
        QTemporaryDir dir;
        QFile file(dir.filePath(u"b.csv"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        const WaveFile::ReadResult read = WaveFile::read(file.fileName());
        QCOMPARE(read.status, status);
        QCOMPARE(read.line, line);
    }
};

QTEST_MAIN(TestWave)
#include "tst_wave.moc"
