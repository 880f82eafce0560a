#include "core/connect/OpenAdvice.h"

#include "core/connect/ConnectionCheck.h"
#include "core/shared/Language.h"

namespace velora {

QString openFailureAdvice(const QString& device, const DeviceFacts& facts, Language languageId) {
    // The first problem is the likely cause: a missing device before its rights, a lock before
    // a holder.
    for (const Finding& finding : ConnectionCheck::deviceFindings(device, facts)) {
        if (finding.verdict == Finding::Verdict::Problem)
            return finding.text(languageId);
    }
    return QString();
}

}  // namespace velora
