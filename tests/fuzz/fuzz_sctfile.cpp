// The command table file reader on arbitrary bytes: every cell taken from a file is in its
// column's range, and a file without the identification changes nothing.

#include "FuzzSupport.h"
#include "core/comtable/ComFile.h"
#include "core/link/LinkEngine.h"
#include "core/shared/Global.h"
#include "support/FakeLinkUi.h"

using namespace velora;

namespace {

bool inRange(const qint32 value, ComTables::Column column) {
    return value >= ComTables::minimum(column) && value <= ComTables::maximum(column);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::ensureApplication();
    static Global global;
    static test::FakeLinkUi ui;
    static LinkEngine engine(global.Link, ui, LinkEngine::Ticks::Manual);
    static ComFile file(engine, global.Com);
    static const ComTables pristine = [] {
        ComTables tables;
        InitComTable(tables);
        return tables;
    }();
    global.Com = pristine;
    ui.messages.clear();

    const ComFile::ReadResult result =
        file.read(fuzz::scratchFile(QStringLiteral("fuzz.sct"), data, size));
    VELORA_FUZZ_CHECK(result != ComFile::ReadResult::Ignored);
    const ComTables& com = global.Com;
    bool changed = com.CmdVelocity != pristine.CmdVelocity || com.CmdAtc != pristine.CmdAtc ||
                   com.CmdTorque != pristine.CmdTorque;
    for (int k = 0; k < ComTables::CellCount; ++k) {
        changed = changed || com.ComChanged[static_cast<std::size_t>(k)];
        const auto n = static_cast<std::size_t>(ComTables::number(k));
        switch (ComTables::column(k)) {
            case ComTables::Column::Velocity:
                VELORA_FUZZ_CHECK(inRange(com.CmdVelocity[n], ComTables::Column::Velocity));
                break;
            case ComTables::Column::Atc:
                VELORA_FUZZ_CHECK(inRange(com.CmdAtc[n], ComTables::Column::Atc));
                break;
            case ComTables::Column::Torque:
                VELORA_FUZZ_CHECK(inRange(com.CmdTorque[n], ComTables::Column::Torque));
                break;
            case ComTables::Column::None:
                break;
        }
    }
    VELORA_FUZZ_CHECK(result == ComFile::ReadResult::Loaded || !ui.messages.isEmpty());
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (!text.contains("Orvix-Servo v/a/t commands file"))
        VELORA_FUZZ_CHECK(!changed && result == ComFile::ReadResult::Failed);
    return 0;
}
