#pragma once

#include <QString>
#include <QStringList>

namespace velora {

// One line of the connection check: its verdict, and a catalogue text with its arguments, so
// that the window shows it in the user's language and the command line in English.
struct Finding {
    enum class Verdict { Ok, Problem, Note, Skipped };

    Verdict verdict = Verdict::Ok;
    int textId = 0;
    QStringList args;

    // "Problem: ..." in the language; the text carries its own fix.
    [[nodiscard]] QString line(int languageId) const;
    // The text alone, without the verdict.
    [[nodiscard]] QString text(int languageId) const;
};

}  // namespace velora
