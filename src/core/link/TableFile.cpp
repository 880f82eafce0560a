#include "core/link/TableFile.h"

#include "core/link/LinkEngine.h"
#include "core/shared/BoundedLineReader.h"
#include "core/shared/LinkState.h"
#include "core/shared/SafeFileWrite.h"
#include "core/shared/TextCatalogue.h"

namespace velora::tablefile {

namespace {

constexpr Text FailureText = Text::MsgFileAccessError;
constexpr Text FailureCaption = Text::MsgFileAccessErrorCaption;

}  // namespace

void showError(LinkEngine& engine, Text text, Text caption) {
    const Language lang = engine.state().LanguageId;
    engine.showError(TextCatalogue::text(lang, text), TextCatalogue::text(lang, caption));
}

bool write(LinkEngine& engine, const QString& path, const QByteArray& content) {
    if (path.isEmpty())
        return false;
    if (writeFileSafely(path, content))
        return true;
    showError(engine, FailureText, FailureCaption);
    return false;
}

bool open(LinkEngine& engine, BoundedLineReader& file, const QString& path,
          const QByteArray& identification, Text wrongText, Text wrongCaption) {
    const std::optional<QByteArray> first =
        file.open(path) == BoundedLineReader::OpenResult::Ok ? file.next() : std::nullopt;
    if (!first) {
        showError(engine, FailureText, FailureCaption);
        return false;
    }
    if (*first != identification) {
        showError(engine, wrongText, wrongCaption);
        return false;
    }
    return true;
}

}  // namespace velora::tablefile
