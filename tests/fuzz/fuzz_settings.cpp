// The settings store reading a settings file with arbitrary contents (hand-edited, truncated,
// from another program): every value the program takes is one it can work with.

#include "FuzzSupport.h"
#include "core/shared/Global.h"
#include "core/shared/SettingsStore.h"

#include <QFileInfo>

using namespace velora;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::ensureApplication();
    const QString path =
        fuzz::scratchFile(QStringLiteral("Halvern Electronics Velora.conf"), data, size);
    const SettingsStore store(QFileInfo(path).absolutePath());
    Global global;
    store.loadComAndLanguage(global);
    const LinkState& link = global.Link;
    VELORA_FUZZ_CHECK(link.LanguageId == Language::English ||
                      link.LanguageId == Language::Japanese);
    VELORA_FUZZ_CHECK(link.PortNumber >= 0 && link.PortNumber <= 16);
    VELORA_FUZZ_CHECK(link.AxisNumber >= 0 && link.AxisNumber <= 15);
    const QStringList bauds{QStringLiteral("9600"), QStringLiteral("19200"),
                            QStringLiteral("38400"), QStringLiteral("57600"),
                            QStringLiteral("115200")};
    VELORA_FUZZ_CHECK(bauds.contains(link.BaudRate));
    VELORA_FUZZ_CHECK(global.Prm1To45Connect >= 0 && global.Prm1To45Connect <= 2);
    const int retry = store.loadRetryTime();
    VELORA_FUZZ_CHECK(retry >= 200 && retry <= 2000);
    store.loadWaveMon(global.WaveMon);
    return 0;
}
