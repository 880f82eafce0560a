#include "core/shared/SettingsStore.h"

#include "core/shared/Global.h"
#include "core/shared/NumericText.h"
#include "core/shared/WaveMonSettings.h"
#include "core/shared/WindowLayout.h"

#include <QDir>
#include <QLocale>
#include <QSettings>
#include <QStringList>

namespace velora {

namespace {

const QString kApplication = QStringLiteral("Halvern Electronics Velora");
const QString kSiblingApplication = QStringLiteral("Halvern Electronics Velora Int");
const QString kComGroup = QStringLiteral("COMSetting");
const QString kLanguageGroup = QStringLiteral("Language");
const QString kWaveGroup = QStringLiteral("WaveMonSettings");
const QString kConnectionGroup = QStringLiteral("Connection");

constexpr int kInt16Min = -32768;
constexpr int kInt16Max = 32767;

// Reads the keys of one group with their defaults.
class GroupReader {
public:
    GroupReader(QSettings& settings, const QString& group) : settings_(settings) {
        settings_.beginGroup(group);
    }
    ~GroupReader() { settings_.endGroup(); }
    GroupReader(const GroupReader&) = delete;
    GroupReader& operator=(const GroupReader&) = delete;

    [[nodiscard]] bool flag(const QString& key, bool fallback) const {
        return SettingsStore::readFlag(text(key)).value_or(fallback);
    }
    // A whole number within minimum..maximum; anything else gives the default.
    [[nodiscard]] int integer(const QString& key, int fallback, int minimum = kInt16Min,
                              int maximum = kInt16Max) const {
        const std::optional<int> value = SettingsStore::readInteger(text(key));
        return value && *value >= minimum && *value <= maximum ? *value : fallback;
    }
    [[nodiscard]] QString text(const QString& key) const { return settings_.value(key).toString(); }

private:
    QSettings& settings_;
};

QString flagText(bool on) {
    return on ? QStringLiteral("True") : QStringLiteral("False");
}

bool isBaudRate(const QString& text) {
    static const QStringList kRates{QStringLiteral("9600"), QStringLiteral("19200"),
                                    QStringLiteral("38400"), QStringLiteral("57600"),
                                    QStringLiteral("115200")};
    return kRates.contains(text);
}

}  // namespace

std::optional<bool> SettingsStore::readFlag(const QString& text) {
    const QString trimmed = text.trimmed();
    if (trimmed.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        return true;
    if (trimmed.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
        return false;
    if (!isNumeric(trimmed))
        return std::nullopt;
    return QLocale::c().toDouble(trimmed) != 0.0;
}

std::optional<int> SettingsStore::readInteger(const QString& text) {
    return toWholeNumber(text);
}

std::unique_ptr<QSettings> SettingsStore::open(const QString& application) const {
    if (!iniDirectory_.isEmpty()) {
        return std::make_unique<QSettings>(QDir(iniDirectory_).filePath(application + ".conf"),
                                           QSettings::IniFormat);
    }
    // The application name goes in the organisation's place: that gives one file (or registry
    // key) named after it, without a sub-folder.
    return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope, application,
                                       QString());
}

QString SettingsStore::location() const {
    return open(kApplication)->fileName();
}

void SettingsStore::loadComAndLanguage(Global& global) const {
    const std::unique_ptr<QSettings> settings = open(kApplication);
    LinkState& link = global.Link;
    {
        const GroupReader language(*settings, kLanguageGroup);
        link.LanguageId =
            static_cast<Language>(language.integer(QStringLiteral("Language"), 0, 0, 1));
    }
    const GroupReader com(*settings, kComGroup);
    link.UsbMode = com.flag(QStringLiteral("USB-RS232C"), false);
    link.PortNumber = com.integer(QStringLiteral("PortNumber"), 1, 0, 16);
    link.AxisNumber = com.integer(QStringLiteral("AxisNumber"), 0, 0, 15);
    const QString baud = com.text(QStringLiteral("BaudRate")).trimmed();
    link.BaudRate = isBaudRate(baud) ? baud : QStringLiteral("9600");
    link.Online = com.flag(QStringLiteral("Online"), true);
    link.RealTimeMonitor = com.flag(QStringLiteral("RtMon"), true);
    link.NonVolatileWrite[0] = com.flag(QStringLiteral("PrmWrite"), true);
    link.NonVolatileWrite[1] = com.flag(QStringLiteral("PtblWrite"), true);
    link.NonVolatileWrite[2] = com.flag(QStringLiteral("ComWrite"), true);
    global.Prm1To45Connect = com.integer(QStringLiteral("PrmCnctSel"), 0, 0, 2);
    global.AxisChangeCaution = com.flag(QStringLiteral("AxisCngCtn"), true);
    global.ConnectCautionDialog = com.flag(QStringLiteral("PrmCnctCtn"), true);
}

int SettingsStore::loadRetryTime() const {
    const std::unique_ptr<QSettings> settings = open(kApplication);
    const GroupReader com(*settings, kComGroup);
    return com.integer(QStringLiteral("RetryTime"), 250, 200, 2000);
}

void SettingsStore::loadWaveMon(WaveMonSettings& wave) const {
    const std::unique_ptr<QSettings> settings = open(kApplication);
    const GroupReader group(*settings, kWaveGroup);
    wave.VelScale = group.integer(QStringLiteral("VelScale"), 2);
    wave.TqScale = group.integer(QStringLiteral("TqScale"), 1);
    wave.TimeScale = group.integer(QStringLiteral("TimeScale"), 2);
    wave.Edge = group.integer(QStringLiteral("Edge"), 0);
    wave.LgcSel = group.integer(QStringLiteral("LgcSel"), 0);
    wave.Wave = group.integer(QStringLiteral("Wave"), 0);
    wave.Trig = group.integer(QStringLiteral("Trig"), 0);
    wave.TrgPosition = group.integer(QStringLiteral("TrgPosition"), 128);
    wave.Zero0 = group.integer(QStringLiteral("Zero0"), 50);
    wave.Zero1 = group.integer(QStringLiteral("Zero1"), 50);
}

void SettingsStore::loadConnection(ConnectionMemory& memory) const {
    const std::unique_ptr<QSettings> settings = open(kApplication);
    const GroupReader group(*settings, kConnectionGroup);
    memory.Device = group.text(QStringLiteral("Device")).trimmed();
    memory.AdapterSerial = group.text(QStringLiteral("AdapterSerial")).trimmed();
    memory.AdapterDevice = group.text(QStringLiteral("AdapterDevice")).trimmed();
}

void SettingsStore::saveAll(const Global& global) const {
    const std::unique_ptr<QSettings> settings = open(kApplication);
    const LinkState& link = global.Link;
    const auto number = [](int value) { return QString::number(value); };

    settings->beginGroup(kLanguageGroup);
    settings->setValue(QStringLiteral("Language"), number(static_cast<int>(link.LanguageId)));
    settings->endGroup();

    settings->beginGroup(kComGroup);
    settings->setValue(QStringLiteral("USB-RS232C"), flagText(link.UsbMode));
    settings->setValue(QStringLiteral("PortNumber"), number(link.PortNumber));
    settings->setValue(QStringLiteral("AxisNumber"), number(link.AxisNumber));
    settings->setValue(QStringLiteral("BaudRate"), link.BaudRate);
    settings->setValue(QStringLiteral("Online"), flagText(link.Online));
    settings->setValue(QStringLiteral("RtMon"), flagText(link.RealTimeMonitor));
    settings->setValue(QStringLiteral("PrmWrite"), flagText(link.NonVolatileWrite[0]));
    settings->setValue(QStringLiteral("PtblWrite"), flagText(link.NonVolatileWrite[1]));
    settings->setValue(QStringLiteral("ComWrite"), flagText(link.NonVolatileWrite[2]));
    settings->setValue(QStringLiteral("RetryTime"), number(global.RetryTime));
    settings->setValue(QStringLiteral("PrmCnctSel"), number(global.Prm1To45Connect));
    settings->setValue(QStringLiteral("AxisCngCtn"), flagText(global.AxisChangeCaution));
    settings->setValue(QStringLiteral("PrmCnctCtn"), flagText(global.ConnectCautionDialog));
    settings->endGroup();

    const WaveMonSettings& wave = global.WaveMon;
    settings->beginGroup(kWaveGroup);
    settings->setValue(QStringLiteral("VelScale"), number(wave.VelScale));
    settings->setValue(QStringLiteral("TqScale"), number(wave.TqScale));
    settings->setValue(QStringLiteral("TimeScale"), number(wave.TimeScale));
    settings->setValue(QStringLiteral("Edge"), number(wave.Edge));
    settings->setValue(QStringLiteral("LgcSel"), number(wave.LgcSel));
    settings->setValue(QStringLiteral("Wave"), number(wave.Wave));
    settings->setValue(QStringLiteral("Trig"), number(wave.Trig));
    settings->setValue(QStringLiteral("TrgPosition"), number(wave.TrgPosition));
    settings->setValue(QStringLiteral("Zero0"), number(wave.Zero0));
    settings->setValue(QStringLiteral("Zero1"), number(wave.Zero1));
    settings->endGroup();

    settings->beginGroup(kConnectionGroup);
    settings->setValue(QStringLiteral("Device"), global.Connection.Device);
    settings->setValue(QStringLiteral("AdapterSerial"), global.Connection.AdapterSerial);
    settings->setValue(QStringLiteral("AdapterDevice"), global.Connection.AdapterDevice);
    settings->endGroup();
    settings->sync();
}

std::optional<WindowLayout> SettingsStore::loadLayout() const {
    const std::unique_ptr<QSettings> settings = open(kApplication);
    return WindowLayout::read(*settings);
}

void SettingsStore::saveLayout(const WindowLayout& layout) const {
    const std::unique_ptr<QSettings> settings = open(kApplication);
    layout.write(*settings);
    settings->sync();
}

void SettingsStore::clearSiblingSkipFlag() const {
    const std::unique_ptr<QSettings> settings = open(kSiblingApplication);
    settings->beginGroup(QStringLiteral("Setting"));
    settings->setValue(QStringLiteral("SkipFg"), flagText(false));
    settings->endGroup();
    settings->sync();
}

}  // namespace velora
