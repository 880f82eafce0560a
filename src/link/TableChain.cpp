#include "link/TableChain.h"

#include "link/LinkEngine.h"

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

}  // namespace velora::tablechain
