#include "core/connect/Finding.h"

#include "core/shared/TextCatalogue.h"

namespace velora {

QString Finding::text(int languageId) const {
    QString result = TextCatalogue::text(languageId, textId);
    for (const QString& arg : args)
        result = result.arg(arg);
    return result;
}

QString Finding::line(int languageId) const {
    int verdictId = 1973;
    switch (verdict) {
        case Verdict::Ok:
            verdictId = 1973;
            break;
        case Verdict::Problem:
            verdictId = 1974;
            break;
        case Verdict::Note:
            verdictId = 1975;
            break;
        case Verdict::Skipped:
            verdictId = 1976;
            break;
    }
    return TextCatalogue::text(languageId, verdictId) + QStringLiteral(": ") + text(languageId);
}

}  // namespace velora
