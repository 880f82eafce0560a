// The wave data file reader on arbitrary bytes: a file it accepts holds settings the display
// can use, and writing what was read and reading it again gives the same record.

#include "FuzzSupport.h"
#include "core/wave/WaveFile.h"
#include "core/wave/WaveScale.h"

using namespace velora;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::ensureApplication();
    const WaveFile::ReadResult read =
        WaveFile::read(fuzz::scratchFile(QStringLiteral("fuzz.csv"), data, size));
    if (read.status != WaveFile::Status::Ok) {
        // Only a later line can be malformed: the first one is the identification.
        if (read.status == WaveFile::Status::Malformed)
            VELORA_FUZZ_CHECK(read.line > 1 && read.line <= WaveFile::LineCount);
        return 0;
    }
    const WaveFile::Settings& s = read.settings;
    VELORA_FUZZ_CHECK(s.Trig >= 0 && s.LgcSel >= 0 && s.Edge >= 0 && s.Wave >= 0);
    VELORA_FUZZ_CHECK(s.VelScale >= 0 && s.VelScale < int(wave::VelScaleRpm.size()));
    VELORA_FUZZ_CHECK(s.TqScale >= 0 && s.TqScale < int(wave::TqScalePercent.size()));
    VELORA_FUZZ_CHECK(s.TimeScale >= 0 && s.TimeScale < int(wave::TimeScaleMs.size()));
    VELORA_FUZZ_CHECK(s.VelZero >= 0 && s.VelZero <= 100 && s.TqZero >= 0 && s.TqZero <= 100);
    VELORA_FUZZ_CHECK(s.TrigPosPercent >= 20 && s.TrigPosPercent <= 80);
    for (const quint16 logic : read.nowLogic)
        VELORA_FUZZ_CHECK(logic <= 1);

    WaveStore store;
    store.WaveSamples[1] = read.now;  // the newest record is slot 1, as the window keeps it
    store.WaveLogic[1] = read.nowLogic;
    const QByteArray again = WaveFile::format(s, store);
    VELORA_FUZZ_CHECK(again.count("\r\n") == WaveFile::LineCount);
    const WaveFile::ReadResult reread = WaveFile::read(fuzz::scratchFile(
        QStringLiteral("again.csv"), reinterpret_cast<const uint8_t*>(again.constData()),
        static_cast<size_t>(again.size())));
    VELORA_FUZZ_CHECK(reread.status == WaveFile::Status::Ok);
    VELORA_FUZZ_CHECK(reread.now == read.now && reread.nowLogic == read.nowLogic);
    VELORA_FUZZ_CHECK(reread.settings.TrigPosPercent == s.TrigPosPercent &&
                      reread.settings.VelZero == s.VelZero && reread.settings.Trig == s.Trig);
    return 0;
}
