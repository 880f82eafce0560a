#include "core/params/ParamGuide.h"

#include "core/params/ParamCatalogue.h"
#include "core/shared/TextCatalogue.h"

#include <QStringList>

namespace velora::paramguide {

QString toolTip(Language languageId, int n) {
    QString range = TextCatalogue::text(languageId, Text::ParamRange)
                        .arg(ParamCatalogue::minimum(n))
                        .arg(ParamCatalogue::maximum(n));
    const QString unit = ParamCatalogue::unitText(languageId, ParamCatalogue::unit(n));
    if (!unit.isEmpty())
        range += QLatin1Char(' ') + unit;
    QString tip = ParamCatalogue::label(languageId, n) + QLatin1Char('\n') + range;
    if (ParamCatalogue::needsRestart(n))
        tip +=
            QLatin1Char('\n') + TextCatalogue::text(languageId, Text::ParamTakesEffectAfterDrive);
    return tip;
}

bool matches(Language languageId, int n, const QString& query) {
    const QStringList words = query.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty())
        return true;
    bool numeric = false;
    const int number = query.trimmed().toInt(&numeric);
    if (numeric && words.size() == 1)
        return number == n;
    const QString shown = ParamCatalogue::label(languageId, n);
    const QString english = ParamCatalogue::label(Language::English, n);
    for (const QString& word : words) {
        if (!shown.contains(word, Qt::CaseInsensitive) &&
            !english.contains(word, Qt::CaseInsensitive))
            return false;
    }
    return true;
}

}  // namespace velora::paramguide
