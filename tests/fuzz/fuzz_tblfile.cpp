// The point table file reader on arbitrary bytes: every field taken from a file is in its
// range, and a file without the identification changes nothing.

#include "FuzzSupport.h"
#include "core/link/LinkEngine.h"
#include "core/pointtable/PointFile.h"
#include "core/shared/Global.h"
#include "support/FakeLinkUi.h"

using namespace velora;

namespace {

bool inRange(const PointEntry& p) {
    return p.PosTor <= 7 && p.AbsInc <= 1 && p.Position >= -99999999 && p.Position <= 99999999 &&
           p.Velocity <= 9 && p.AccConst <= 9 && p.WaitTime >= 0 && p.WaitTime <= 65535 &&
           p.NextStart <= 3;
}

bool same(const PointEntry& a, const PointEntry& b) {
    return a.PosTor == b.PosTor && a.AbsInc == b.AbsInc && a.Position == b.Position &&
           a.Velocity == b.Velocity && a.AccConst == b.AccConst && a.WaitTime == b.WaitTime &&
           a.NextStart == b.NextStart;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::ensureApplication();
    static Global global;
    static test::FakeLinkUi ui;
    static LinkEngine engine(global.Link, ui, LinkEngine::Ticks::Manual);
    static PointFile file(engine, global.Points);
    global.Points = PointTables{};
    ui.messages.clear();

    const PointFile::ReadResult result =
        file.ReadPointFile(fuzz::scratchFile(QStringLiteral("fuzz.tbl"), data, size));
    VELORA_FUZZ_CHECK(result != PointFile::ReadResult::Ignored);
    bool changed = false;
    for (int p = 0; p < PointTables::Count; ++p) {
        const auto i = static_cast<std::size_t>(p);
        VELORA_FUZZ_CHECK(inRange(global.Points.PointTable[i]));
        changed = changed || global.Points.PointChanged[i] ||
                  !same(global.Points.PointTable[i], PointEntry{});
    }
    // A failure is always said; a file that is not a point table file changes nothing.
    VELORA_FUZZ_CHECK(result == PointFile::ReadResult::Loaded || !ui.messages.isEmpty());
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (!text.contains("Orvix-Servo point table data file"))
        VELORA_FUZZ_CHECK(!changed && result == PointFile::ReadResult::Failed);
    return 0;
}
