#include "core/connect/OpenAdvice.h"

#include "core/connect/ConnectionCheck.h"
#include "core/link/LinkEngine.h"
#include "core/shared/LinkState.h"

namespace velora {

void adviseOpenFailures(LinkEngine& engine) {
    engine.setOpenAdvice([&link = engine.state()](const OpenResult& failed) {
        return ConnectionCheck::adviceForFailedOpen(failed, link.LanguageId);
    });
}

}  // namespace velora
