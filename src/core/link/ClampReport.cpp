#include "core/link/ClampReport.h"

#include "core/link/LinkEngine.h"
#include "core/shared/LinkState.h"
#include "core/shared/TextCatalogue.h"

namespace velora {

void ClampReport::add(const QString& what, qint64 inFile, qint64 taken) {
    ++count_;
    if (listed_.size() < Listed)
        listed_.append({what, inFile, taken});
}

QString ClampReport::text(Language languageId) const {
    QString message =
        count_ == 1 ? TextCatalogue::text(languageId, Text::Msg1ValueFileWas)
                    : TextCatalogue::text(languageId, Text::MsgValuesFileWereOutside).arg(count_);
    for (const Entry& e : listed_)
        message += QStringLiteral("\n%1: %2 \u2192 %3").arg(e.what).arg(e.inFile).arg(e.taken);
    if (count_ > listed_.size())
        message +=
            QLatin1Char('\n') + TextCatalogue::text(languageId, Text::MsgMore).arg(count_ - Listed);
    return message;
}

void ClampReport::show(LinkEngine& engine) const {
    if (count_ == 0)
        return;
    const Language lang = engine.state().LanguageId;
    engine.showWarning(text(lang), TextCatalogue::text(lang, Text::MsgValuesChangedOnLoading));
}

}  // namespace velora
