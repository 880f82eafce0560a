#include "core/link/TableChain.h"

#include "core/link/LinkEngine.h"
#include "core/shared/LinkState.h"

namespace velora::tablechain {

void start(LinkEngine& engine, bool& transferActive, const QString& command) {
    transferActive = true;
    engine.PostCommand(command);
    engine.ShowBusyDialog();
}

void endTableRead(LinkEngine& engine, bool& loaded, bool& transferActive,
                  const std::function<void()>& finish) {
    engine.pauseTimer1();
    engine.HideDialog();
    loaded = true;
    transferActive = false;
    finish();
    engine.EnableControls(true);
    engine.sendPoll();
    engine.resumeTimer1();
}

void cancel(LinkEngine& engine) {
    LinkState& s = engine.state();
    s.AwaitingReply = false;
    s.ParamTransferActive = false;
    s.PointTransferActive = false;
    s.ComTableTransferActive = false;
    // The chain's first command may still wait for its slot.
    s.QueuedCommand.clear();
    engine.HideDialog();
    engine.EnableControls(true);
    if (s.WaveState == 0)
        engine.sendPoll();
}

}  // namespace velora::tablechain
