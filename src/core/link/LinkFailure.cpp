#include "core/link/LinkFailure.h"

#include "core/link/LinkEngine.h"
#include "core/shared/LinkState.h"
#include "core/shared/TextCatalogue.h"

namespace velora::linkfailure {

namespace {

// The catalogue's word for the failure, then the detail, then after a blank line the advice.
QString message(const LinkEngine& engine, const QString& detail, Text advice) {
    const Language lang = engine.state().LanguageId;
    return TextCatalogue::text(lang, Text::MsgCommunicationFailure) + QLatin1Char('\n') + detail +
           QStringLiteral("\n\n") + TextCatalogue::text(lang, advice);
}

}  // namespace

QString request(const LinkEngine& engine) {
    return engine.state().run().LastCommand.mid(1);
}

QString noAnswerDetail(const LinkEngine& engine) {
    const LinkState& s = engine.state();
    return TextCatalogue::text(s.LanguageId, Text::MsgNoAnswerAfterResends)
        .arg(request(engine))
        .arg(s.AxisNumber)
        .arg(s.BaudRate, engine.device())
        .arg(s.run().RetryCount);
}

QString noAnswer(const LinkEngine& engine) {
    return message(engine, noAnswerDetail(engine), Text::MsgNoAnswerAdvice);
}

QString unreadableReply(const LinkEngine& engine, const QString& reply) {
    const LinkState& s = engine.state();
    // Enough of a long reply to recognise it; the trace holds all of it.
    constexpr int Shown = 40;
    const QString shown = reply.size() > Shown ? reply.left(Shown) + QStringLiteral("...") : reply;
    const QString detail = TextCatalogue::text(s.LanguageId, Text::MsgReplyUnreadable)
                               .arg(request(engine))
                               .arg(s.AxisNumber)
                               .arg(s.BaudRate, engine.device(), shown);
    return message(engine, detail, Text::MsgGarbledReplyAdvice);
}

}  // namespace velora::linkfailure
