#include "cli/ConsoleLinkUi.h"

#include "core/shared/LinkState.h"
#include "core/shared/TextCatalogue.h"

#include <QRegularExpression>

namespace velora::cli {

QString ConsoleLinkUi::oneLine(const QString& text) {
    static const QRegularExpression breaks(QStringLiteral("\\s*[\\r\\n]+\\s*"));
    QString line = text;
    line.replace(breaks, QStringLiteral(" "));
    return line.trimmed();
}

void ConsoleLinkUi::showError(const QString& text, const QString& caption) {
    // The captions of file and link errors are the same word, so the texts tell them apart.
    const Language lang = state_.LanguageId;
    if (text == TextCatalogue::text(lang, Text::MsgIdentificationError1722) ||
        text == TextCatalogue::text(lang, Text::MsgFileAccessError)) {
        fail(ExitCode::FileError, text);
    } else if (state_.run().ReplyCode == QLatin1String("ER")) {
        // An error class beyond the catalogue has no text; the caption still says what it was.
        fail(ExitCode::DriveRefusal, text.isEmpty() ? caption : text);
    } else if (text.startsWith(TextCatalogue::text(lang, Text::LinkIllegalCommandString))) {
        // Refused before sending: the text cannot travel in one frame.
        fail(ExitCode::Usage, text);
    } else {
        fail(ExitCode::LinkFailure, text);
    }
}

bool ConsoleLinkUi::askRetry(const QString& text, const QString& /*caption*/) {
    // The advice after the blank line is about the Retry and Cancel buttons, which a script
    // does not have; the session adds its own.
    fail(ExitCode::LinkFailure, text.section(QStringLiteral("\n\n"), 0, 0));
    return false;
}

void ConsoleLinkUi::showNotice(const QString& text, const QString& /*caption*/) {
    if (notice_)
        notice_(oneLine(text));
}

void ConsoleLinkUi::fail(ExitCode code, const QString& text) {
    if (failure_)
        failure_(code, oneLine(text));
}

}  // namespace velora::cli
