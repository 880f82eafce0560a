#include "core/link/TableChain.h"

#include "core/link/LinkEngine.h"
#include "core/shared/LinkState.h"

namespace velora::tablechain {

void start(LinkEngine& engine, Transfer kind, const QString& command) {
    engine.beginTransfer(kind);
    engine.PostCommand(command);
    engine.ShowBusyDialog();
}

void endTableRead(LinkEngine& engine, bool& loaded, Transfer kind,
                  const std::function<void()>& finish) {
    engine.pauseTimer1();
    engine.HideDialog();
    loaded = true;
    engine.endTransfer(kind);
    finish();
    engine.EnableControls(true);
    engine.sendPoll();
    engine.resumeTimer1();
}

void cancel(LinkEngine& engine) {
    const LinkState& s = engine.state();
    // The chain's first command may still wait for its slot.
    engine.abandonCommands();
    engine.endAllTransfers();
    engine.HideDialog();
    engine.EnableControls(true);
    if (s.run().Wave == WaveState::Idle)
        engine.sendPoll();
}

}  // namespace velora::tablechain
