#include "core/shared/Global.h"
#include "core/shared/SettingsStore.h"

#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

using namespace velora;
using namespace Qt::StringLiterals;

namespace {

const QString kFileName = u"Halvern Electronics Velora.conf"_s;

// Every stored setting as the store's key and the value's text.
QMap<QString, QString> render(const Global& g, int retryTime) {
    const LinkState& l = g.Link;
    const WaveMonSettings& w = g.WaveMon;
    const auto flag = [](bool on) { return on ? u"True"_s : u"False"_s; };
    const auto n = [](int value) { return QString::number(value); };
    return {{"COMSetting/USB-RS232C", flag(l.UsbMode)},
            {"COMSetting/PortNumber", n(l.PortNumber)},
            {"COMSetting/AxisNumber", n(l.AxisNumber)},
            {"COMSetting/BaudRate", l.BaudRate},
            {"COMSetting/Online", flag(l.Online)},
            {"COMSetting/RtMon", flag(l.RealTimeMonitor)},
            {"COMSetting/PrmWrite", flag(l.NonVolatileWrite[0])},
            {"COMSetting/PtblWrite", flag(l.NonVolatileWrite[1])},
            {"COMSetting/ComWrite", flag(l.NonVolatileWrite[2])},
            {"COMSetting/RetryTime", n(retryTime)},
            {"COMSetting/PrmCnctSel", n(g.Prm1To45Connect)},
            {"COMSetting/AxisCngCtn", flag(g.AxisChangeCaution)},
            {"COMSetting/PrmCnctCtn", flag(g.ConnectCautionDialog)},
            {"Language/Language", n(static_cast<int>(l.LanguageId))},
            {"WaveMonSettings/VelScale", n(w.VelScale)},
            {"WaveMonSettings/TqScale", n(w.TqScale)},
            {"WaveMonSettings/TimeScale", n(w.TimeScale)},
            {"WaveMonSettings/Edge", n(w.Edge)},
            {"WaveMonSettings/LgcSel", n(w.LgcSel)},
            {"WaveMonSettings/Wave", n(w.Wave)},
            {"WaveMonSettings/Trig", n(w.Trig)},
            {"WaveMonSettings/TrgPosition", n(w.TrgPosition)},
            {"WaveMonSettings/Zero0", n(w.Zero0)},
            {"WaveMonSettings/Zero1", n(w.Zero1)}};
}

// What a start-up reads from the store, over a state that differs from every default.
QMap<QString, QString> load(const SettingsStore& store) {
    Global g;
    g.Link.UsbMode = true;
    g.Link.PortNumber = 9;
    g.Link.Online = false;
    g.Link.NonVolatileWrite = {false, false, false};
    g.AxisChangeCaution = false;
    g.WaveMon.TrgPosition = 3;
    store.loadComAndLanguage(g);
    store.loadWaveMon(g.WaveMon);
    return render(g, store.loadRetryTime());
}

}  // namespace

// The settings store on ini files in a temporary directory: defaults, what the file holds
// after a save, and lenient reading of what a hand or another program left there.
class TestSettingsStore : public QObject {
    Q_OBJECT

    QTemporaryDir dir_;

    [[nodiscard]] SettingsStore store() const { return SettingsStore(dir_.path()); }

private slots:
    void init() { QFile::remove(dir_.filePath(kFileName)); }

    void emptyStoreGivesTheDefaults() {
        const QMap<QString, QString> loaded = load(store());
        QCOMPARE(loaded, render(Global{}, 250));
        QCOMPARE(loaded.value("COMSetting/PortNumber"), u"1"_s);
        QCOMPARE(loaded.value("WaveMonSettings/TrgPosition"), u"128"_s);
        QVERIFY(!QFile::exists(dir_.filePath(kFileName)));  // reading writes nothing
    }

    void savedSettingsAreTextsAndReadBack() {
        Global g;
        g.Link.UsbMode = true;
        g.Link.PortNumber = 3;
        g.Link.AxisNumber = 15;
        g.Link.BaudRate = u"38400"_s;
        g.Link.LanguageId = Language::Japanese;
        g.Link.RealTimeMonitor = false;
        g.Link.NonVolatileWrite = {true, false, true};
        g.RetryTime = 750;
        g.Prm1To45Connect = 2;
        g.ConnectCautionDialog = false;
        g.WaveMon.Edge = 3;
        g.WaveMon.Zero1 = -7;
        store().saveAll(g);

        QSettings raw(dir_.filePath(kFileName), QSettings::IniFormat);
        QCOMPARE(raw.value("COMSetting/PortNumber").toString(), u"3"_s);
        QCOMPARE(raw.value("Language/Language").toString(), u"1"_s);
        QCOMPARE(raw.value("COMSetting/USB-RS232C").toString(), u"True"_s);
        QCOMPARE(raw.value("COMSetting/PtblWrite").toString(), u"False"_s);
        QCOMPARE(load(store()), render(g, 750));
    }

    void storedTextsAreReadLeniently_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");

        // clang-format off
        QTest::newRow("flag in lower case"  ) << "COMSetting/USB-RS232C"       << " true " << "True";
        QTest::newRow("flag as 0"           ) << "COMSetting/RtMon"            << "0"      << "False";
        QTest::newRow("flag as -1"          ) << "COMSetting/Online"           << "-1"     << "True";
        QTest::newRow("flag as a word"      ) << "COMSetting/Online"           << "no"     << "True";
        QTest::newRow("number, half to even") << "COMSetting/PortNumber"       << "2.5"    << "2";
        QTest::newRow("number as a word"    ) << "COMSetting/PortNumber"       << "three"  << "1";
        QTest::newRow("port at its maximum" ) << "COMSetting/PortNumber"       << "16"     << "16";
        QTest::newRow("port above it"       ) << "COMSetting/PortNumber"       << "17"     << "1";
        QTest::newRow("axis out of range"   ) << "COMSetting/AxisNumber"       << "16"     << "0";
        QTest::newRow("baud rate unknown"   ) << "COMSetting/BaudRate"         << "12345"  << "9600";
        QTest::newRow("language unknown"    ) << "Language/Language"           << "2"      << "0";
        QTest::newRow("retry time at its minimum") << "COMSetting/RetryTime"   << "200"    << "200";
        QTest::newRow("retry time below it" ) << "COMSetting/RetryTime"        << "199"    << "250";
        QTest::newRow("retry time at its maximum") << "COMSetting/RetryTime"   << "2000"   << "2000";
        QTest::newRow("retry time above it" ) << "COMSetting/RetryTime"        << "2001"   << "250";
        QTest::newRow("wave beyond 16 bits" ) << "WaveMonSettings/TrgPosition" << "70000"  << "128";
        // clang-format on
    }

    void storedTextsAreReadLeniently() {
        QFETCH(QString, key);
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QSettings(dir_.filePath(kFileName), QSettings::IniFormat).setValue(key, text);
        QCOMPARE(load(store()).value(key), expected);
    }

    void userStoreIsOneFileNamedAfterTheProgram() {
#ifdef Q_OS_LINUX
        // Only the name is asked for; nothing is read or written.
        QCOMPARE(SettingsStore().location(),
                 QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + '/' +
                     kFileName);
#else
        QSKIP("the store's location is checked on Linux");
#endif
    }
};

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "tst_settingsstore.moc"
