#include "core/wave/WaveScale.h"
#include "gui/wave/HMonWindow.h"
#include "gui/wave/MarkerStrip.h"
#include "gui/wave/WaveTrace.h"

#include "ShellRig.h"
#include "core/link/TransportFactory.h"
#include "sim/SimulatedLine.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QtTest>

using namespace velora;
using namespace Qt::StringLiterals;
using namespace velora::test;

// The wave monitor end to end: the window, the real serial back-end on a pseudo-terminal and
// the simulated drive, which records what its motion does.
class TestWaveMonitor : public QObject {
    Q_OBJECT
private:
    template <typename T = QWidget>
    T* control(const ShellRig& rig, const QString& name) const {
        T* found = rig.find<T>(name, rig.find(u"HMon"_s));
        if (!found)
            qFatal("no control %s", qPrintable(name));
        return found;
    }
    static bool runUntil(ShellRig& rig, const std::function<bool()>& done) {
        // Timer1 at its real pace: ticking faster would shrink the reply supervision (a
        // re-send after two ticks) below what a loaded machine needs for a reply.
        for (int i = 0; i < 500 && !done(); ++i) {
            if (i % 25 == 24)
                rig.engine().tick();
            QTest::qWait(10);
        }
        return done();
    }
    // Whether the newest trace's colour is among the picture's pixels.
    static bool showsNowTrace(WaveTrace* picture) {
        const QImage image = picture->grab().toImage();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) == WaveTrace::NowColour)
                    return true;
            }
        }
        return false;
    }

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    // The percent boxes: whatever is typed, on Enter or on leaving, ends within the limits or
    // restores the value, and the lists keep exactly their three entries.
    void typedPercent_data() {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("enter");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<int>("stored");
        QTest::newRow("trigger above 80 %") << u"CmbTrigPos"_s << u"95"_s << true << u"80"_s << 205;
        QTest::newRow("trigger below 20 %") << u"CmbTrigPos"_s << u"10"_s << false << u"20"_s << 51;
        QTest::newRow("trigger not numeric")
            << u"CmbTrigPos"_s << u"abc"_s << true << u"50"_s << 128;
        QTest::newRow("zero above 100") << u"CmbVelZero"_s << u"120"_s << true << u"100"_s << 100;
        QTest::newRow("zero not completed") << u"CmbVelZero"_s << u"5"_s << true << u"5"_s << 5;
    }
    void typedPercent() {
        QFETCH(QString, box);
        QFETCH(QString, typed);
        QFETCH(bool, enter);
        QFETCH(QString, shown);
        QFETCH(int, stored);
        ShellRig rig;
        rig.start();
        auto* combo = control<QComboBox>(rig, box);
        QLineEdit* edit = combo->lineEdit();
        combo->window()->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(combo->window()));
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, typed);
        QTest::keyClick(edit, enter ? Qt::Key_Return : Qt::Key_Tab);
        QCOMPARE(combo->currentText(), shown);
        const WaveStore& store = rig.global.Wave;
        QCOMPARE(box == u"CmbTrigPos"_s   ? store.TriggerPosition
                 : box == u"CmbVelZero"_s ? store.ZeroLevel[0]
                                          : store.ZeroLevel[1],
                 stored);
        QCOMPARE(combo->count(), 3);
    }

    void capturesTheSimulatedDrive() {
        sim::SimOptions options;
        options.fast = true;
        sim::SimulatedLine line(options);
        QVERIFY2(line.open(), qPrintable(line.errorString()));
        // 25 ms/div: the record spans a quarter of a second.
        ShellRig rig({{u"WaveMonSettings/TimeScale"_s, u"0"_s}}, createTransport,
                     line.devicePath());
        QStringList received;
        connect(&line, &sim::SimulatedLine::commandReceived, this,
                [&received](const QString& text) { received << text; });
        rig.start();
        // Minimised on a small screen: opened as a user would, at a size that shows the trace.
        rig.find(u"HMon"_s)->parentWidget()->showNormal();
        rig.find(u"HMon"_s)->parentWidget()->resize(760, 560);
        QVERIFY(runUntil(rig, [&] { return rig.link().run().MonitorRunning; }));
        auto* run = control<QPushButton>(rig, u"CmdRun"_s);
        auto* cancel = control<QPushButton>(rig, u"CmdCancel"_s);
        auto* status = control<QLabel>(rig, u"LblJap"_s);
        auto* velocity = control<WaveTrace>(rig, u"Picture1(0)"_s);
        WaveStore& store = rig.global.Wave;
        sim::DriveModel& drive = line.bus().drive(0)->model();
        QVERIFY(drive.servoOn() == sim::DriveModel::Refusal::None);

        // Armed on a rising velocity: the chain stops and nothing is polled while it waits.
        // Run is locked while another exchange (the identification, a poll) is in flight.
        QVERIFY(runUntil(rig, [&] { return run->isEnabled(); }));
        const QRect settings = control(rig, u"PictEnable"_s)->geometry();
        QTest::mouseClick(run, Qt::LeftButton);
        QVERIFY(runUntil(rig, [&] { return rig.link().run().Wave == WaveState::Armed; }));
        QCOMPARE(status->text(), en(Text::WaveTriggerWaiting));
        QCOMPARE(control(rig, u"PictEnable"_s)->geometry(), settings);  // nothing squeezed
        QVERIFY(!control(rig, u"PictEnable"_s)->isEnabled());
        QVERIFY(!rig.find<QPushButton>(u"LabelRtMon(0)"_s)->isEnabled());
        QVERIFY(cancel->isEnabled());
        QTest::qWait(50);
        const qsizetype sentWhileArmed = received.size();
        rig.ticks(6);
        QCOMPARE(received.size(), sentWhileArmed);

        // The jog triggers it; the record arrives and is drawn as "now".
        QVERIFY(drive.jog(false) == sim::DriveModel::Refusal::None);
        QVERIFY(runUntil(rig, [&] { return rig.link().run().Wave == WaveState::Idle; }));
        QVERIFY(control(rig, u"PictYomitorichu"_s)->isHidden());
        QVERIFY(control(rig, u"PictEnable"_s)->isEnabled());
        QVERIFY(cancel->isEnabled());
        QVERIFY(rig.find<QPushButton>(u"LabelRtMon(0)"_s)->isEnabled());
        QVERIFY(store.sample(1, 249, 0) > 10);  // moving at the end of the record
        const QPolygonF drawn = velocity->tracePoints(1);
        QCOMPARE(drawn.size(), WaveStore::SampleCount);
        // The jog's speed lies above the zero line, as high as the scale says.
        const double span = wave::fullScale(0, rig.global.WaveMon.VelScale);
        QCOMPARE(drawn.last().y(),
                 wave::yFraction(store.sample(1, 249, 0), span, 50) * velocity->height());
        QVERIFY(drawn.last().y() < drawn.first().y());
        QVERIFY(showsNowTrace(velocity));
        QVERIFY(runUntil(rig, [&] { return rig.link().run().MonitorRunning; }));

        // A second capture, triggered by hand, moves the first into "previous".
        const WaveStore::Record first = store.WaveSamples[1];
        control<QComboBox>(rig, u"CmbTrig"_s)->setCurrentIndex(3);
        // Run is locked while another exchange (the identification, a poll) is in flight.
        QVERIFY(runUntil(rig, [&] { return run->isEnabled(); }));
        QTest::mouseClick(run, Qt::LeftButton);
        QVERIFY(runUntil(rig, [&] { return rig.link().run().Wave != WaveState::Idle; }));
        QVERIFY(runUntil(rig, [&] { return rig.link().run().Wave == WaveState::Idle; }));
        QVERIFY(store.WaveSamples[2] == first);
        QCOMPARE(control<WaveTrace>(rig, u"Picture1(1)"_s)->drawnSlots(), QList<int>({2, 1}));

        // A file written reads back to the same display; broken ones change nothing.
        const QString path = rig.dir.filePath(u"wave.csv"_s);
        auto* window = rig.find<HMonWindow>(u"HMon"_s);
        QVERIFY(window->writeFile(path));
        const WaveStore::Record now = store.WaveSamples[1];
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        file.close();
        QCOMPARE(bytes.count("\r\n"), 505);
        const auto rewrite = [&file](const QByteArray& content) {
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(content);
            file.close();
        };
        rewrite(bytes.left(400));
        QVERIFY(!window->readFile(path));
        QVERIFY(rig.messages.last().text.startsWith(en(Text::MsgFileAccessError)));
        rewrite(bytes.toLower());
        QVERIFY(!window->readFile(path));
        QCOMPARE(rig.messages.last().text, en(Text::MsgIdentificationError));
        QVERIFY(store.WaveSamples[1] == now);
        rewrite(bytes);
        store.WaveSamples[1] = {};
        control<QComboBox>(rig, u"CmbVelZero"_s)->setEditText(u"80"_s);
        QVERIFY(window->readFile(path));
        QVERIFY(store.WaveSamples[1] == now);
        QCOMPARE(control<QComboBox>(rig, u"CmbTrig"_s)->currentIndex(), 3);
        QCOMPARE(control<QComboBox>(rig, u"CmbVelZero"_s)->currentText(), u"50"_s);

        // Cancel while waiting: idle again, and the monitor chain runs on.
        control<QComboBox>(rig, u"CmbTrig"_s)->setCurrentIndex(0);
        QVERIFY(runUntil(rig, [&] { return rig.link().run().QueuedCommand.isEmpty(); }));
        // Run is locked while another exchange (the identification, a poll) is in flight.
        QVERIFY(runUntil(rig, [&] { return run->isEnabled(); }));
        QTest::mouseClick(run, Qt::LeftButton);
        QVERIFY(runUntil(rig, [&] { return rig.link().run().Wave == WaveState::Armed; }));
        QTest::mouseClick(cancel, Qt::LeftButton);
        QVERIFY(runUntil(rig, [&] { return rig.link().run().Wave == WaveState::Idle; }));
        QVERIFY(control(rig, u"PictYomitorichu"_s)->isHidden());
        QVERIFY(store.WaveSamples[1] == now);
        const qsizetype sentAfterCancel = received.size();
        QVERIFY(runUntil(rig, [&] { return received.size() > sentAfterCancel + 3; }));
        QCOMPARE(received.last(), u"0ma"_s);

        saveShots(rig, window);
        // The image keeps room for the three lines of settings above the traces.
        int traces = 0;
        for (int i = 0; i < 3; ++i)
            traces += control(rig, u"Picture1(%1)"_s.arg(i))->height() + 2;
        QVERIFY(window->composeImage().height() - traces >= 3 * window->fontMetrics().height());

        // The markers by mouse and keys: dropped at the far left the trigger stops at 20 %,
        // and each step is sent to the drive as new trigger settings.
        auto* strip = control<MarkerStrip>(rig, u"LblCursor1"_s);
        const QPoint marker = control(rig, u"LblTrgView"_s)->geometry().center();
        QTest::mousePress(strip, Qt::LeftButton, {}, marker);
        QTest::mouseMove(strip, QPoint(0, marker.y()));
        QTest::mouseRelease(strip, Qt::LeftButton, {}, QPoint(0, marker.y()));
        QCOMPARE(store.TriggerPosition, 51);
        QCOMPARE(control<QComboBox>(rig, u"CmbTrigPos"_s)->currentText(), u"20"_s);
        QTest::mouseClick(strip, Qt::LeftButton, {}, QPoint(strip->width() - 2, marker.y()));
        QCOMPARE(store.TriggerPosition, 59);
        QTest::keyClick(control(rig, u"TxtDummy1"_s), Qt::Key_Left);
        QTest::keyClick(control(rig, u"TxtDummy1"_s), Qt::Key_Left);
        QCOMPARE(store.TriggerPosition, 51);
        QCOMPARE(rig.link().run().QueuedCommand, u"0wt000033"_s);
        QTest::keyClick(control(rig, u"Picture1(1)"_s), Qt::Key_Up);
        QCOMPARE(store.ZeroLevel[1], 55);
        QCOMPARE(control<QComboBox>(rig, u"CmbTqZero"_s)->currentText(), u"55"_s);
    }

private:
    // Pictures of the finished scope view for the documentation, when asked for.
    void saveShots(ShellRig& rig, HMonWindow* window) const {
        const QString dir = qEnvironmentVariable("VELORA_SHOTS_DIR");
        if (dir.isEmpty())
            return;
        window->setCursor(0, 60);
        window->setCursor(1, 190);
        for (int lang = 0; lang < 2; ++lang) {
            rig.find<QAction>(u"mnuSystemLang(%1)"_s.arg(lang))->trigger();
            window->parentWidget()->grab().save(dir + u"/wave_%1.png"_s.arg(lang ? u"ja" : u"en"));
        }
    }
};

QTEST_MAIN(TestWaveMonitor)
#include "core/shared/TextId.h"
#include "tst_wavemonitor.moc"
