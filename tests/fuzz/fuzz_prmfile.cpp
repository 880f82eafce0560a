// The parameter file reader on arbitrary bytes, offline as when a file is opened without a
// drive: whatever the file holds, every value taken from it is in its range, and a file that is
// refused outright leaves the table as it was.

#include "FuzzSupport.h"
#include "core/link/LinkEngine.h"
#include "core/params/ParamCatalogue.h"
#include "core/params/ParamFile.h"
#include "core/params/ParamTransfer.h"
#include "core/shared/Global.h"
#include "support/FakeLinkUi.h"

using namespace velora;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::ensureApplication();
    // One link for the whole run; each input starts from freshly initialised tables.
    static Global global;
    static test::FakeLinkUi ui;
    static LinkEngine engine(global.Link, ui, LinkEngine::Ticks::Manual);
    static ParamTransfer transfer(engine, global.Params);
    static ParamFile file(engine, transfer, global.Params);
    static const ParamTables pristine = [] {
        ParamTables tables;
        InitParamTables(tables);
        return tables;
    }();
    global.Link.Online = false;
    global.Params = pristine;
    ui.messages.clear();

    const ParamTables before = global.Params;
    const ParamFile::ReadResult result =
        file.read(fuzz::scratchFile(QStringLiteral("fuzz.prm"), data, size));
    VELORA_FUZZ_CHECK(result == ParamFile::ReadResult::Loaded ||
                      result == ParamFile::ReadResult::Failed);
    VELORA_FUZZ_CHECK(!file.pending());
    bool changed = false;
    for (int n = 0; n < ParamTables::Count; ++n) {
        const auto i = static_cast<std::size_t>(n);
        const bool taken = global.Params.ParamValue[i] != before.ParamValue[i];
        // A value taken from the file is clamped into its range.
        if (taken)
            VELORA_FUZZ_CHECK(global.Params.inRange(n, global.Params.ParamValue[i]));
        changed = changed || taken || global.Params.ParamChanged[i];
    }
    // Without the identification line nothing may be taken from the file.
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (!text.contains("Orvix-Servo parameter file"))
        VELORA_FUZZ_CHECK(!changed && result == ParamFile::ReadResult::Failed);
    return 0;
}
