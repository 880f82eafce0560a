#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace velora {

// The sibling program that "Software Version Change" hands over to: "VeloraIntegral", or its
// English build "VeloraIntegral_EN", in the directory of this program. Windows names them with
// ".exe"; elsewhere the name without it comes first, and the ".exe" name is tried as well.
class SiblingProgram {
public:
    // Starts a program file in a directory; true when it runs.
    using Starter = std::function<bool(const QString& program, const QString& directory)>;

    struct Launch {
        bool started = false;
        QString program;    // the file that was started
        QStringList tried;  // every file looked for, in order, with its directory
    };

    SiblingProgram() = delete;

    // The file names, in the order they are tried.
    [[nodiscard]] static QStringList fileNames();
    // Tries each file in directory until one starts.
    [[nodiscard]] static Launch start(const QString& directory, const Starter& starter);
    // A detached process in a normal window; a missing file does not start.
    [[nodiscard]] static bool startDetached(const QString& program, const QString& directory);
};

}  // namespace velora
