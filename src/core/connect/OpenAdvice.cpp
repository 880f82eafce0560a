#include "core/connect/OpenAdvice.h"

#include "core/connect/ConnectionCheck.h"
#include "core/link/LinkEngine.h"
#include "core/shared/LinkState.h"

namespace velora {

QString openFailureAdvice(const QString& device, const DeviceFacts& facts, int languageId) {
    // The first problem is the likely cause: a missing device before its rights, a lock before
    // a holder.
    for (const Finding& finding : ConnectionCheck::deviceFindings(device, facts)) {
        if (finding.verdict == Finding::Verdict::Problem)
            return finding.text(languageId);
    }
    return QString();
}

QString adviceForFailedOpen(const OpenResult& failed, int languageId) {
    if (failed.error != OpenError::Port)
        return QString();
    return openFailureAdvice(failed.device, gatherDeviceFacts(failed.device), languageId);
}

void adviseOpenFailures(LinkEngine& engine) {
    engine.setOpenAdvice([&link = engine.state()](const OpenResult& failed) {
        return adviceForFailedOpen(failed, link.LanguageId);
    });
}

}  // namespace velora
