#include "core/connect/Finding.h"

#include "core/shared/TextCatalogue.h"

namespace velora {

QString Finding::text(Language languageId) const {
    QString result = TextCatalogue::text(languageId, textId);
    for (const QString& arg : args)
        result = result.arg(arg);
    return result;
}

QString Finding::line(Language languageId) const {
    Text verdictId = Text::CheckVerdictOk;
    switch (verdict) {
        case Verdict::Ok:
            verdictId = Text::CheckVerdictOk;
            break;
        case Verdict::Problem:
            verdictId = Text::CheckVerdictProblem;
            break;
        case Verdict::Note:
            verdictId = Text::CheckVerdictNote;
            break;
        case Verdict::Skipped:
            verdictId = Text::CheckVerdictSkipped;
            break;
    }
    return TextCatalogue::text(languageId, verdictId) + QStringLiteral(": ") + text(languageId);
}

}  // namespace velora
