#pragma once

#include <QString>
#include <QStringList>

#include "core/shared/Language.h"
#include "core/shared/TextId.h"

namespace velora {

// One line of the connection check: its verdict, and a catalogue text with its arguments, so
// that the window shows it in the user's language and the command line in English.
struct Finding {
    enum class Verdict { Ok, Problem, Note, Skipped };

    Verdict verdict = Verdict::Ok;
    Text textId{};
    QStringList args;

    // "Problem: ..." in the language; the text carries its own fix.
    [[nodiscard]] QString line(Language languageId) const;
    // The text alone, without the verdict.
    [[nodiscard]] QString text(Language languageId) const;
};

}  // namespace velora
