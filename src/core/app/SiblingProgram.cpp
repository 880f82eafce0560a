#include "core/app/SiblingProgram.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

namespace velora {

QStringList SiblingProgram::fileNames() {
    QStringList names;
    for (const QString& stem :
         {QStringLiteral("VeloraIntegral"), QStringLiteral("VeloraIntegral_EN")}) {
#ifndef Q_OS_WIN
        names << stem;
#endif
        names << stem + QStringLiteral(".exe");
    }
    return names;
}

SiblingProgram::Launch SiblingProgram::start(const QString& directory, const Starter& starter) {
    Launch launch;
    const QDir dir(directory);
    for (const QString& name : fileNames()) {
        const QString path = QDir::toNativeSeparators(dir.filePath(name));
        launch.tried << path;
        if (starter(path, directory)) {
            launch.started = true;
            launch.program = path;
            break;
        }
    }
    return launch;
}

bool SiblingProgram::startDetached(const QString& program, const QString& directory) {
    if (!QFileInfo(program).isFile())
        return false;
    return QProcess::startDetached(program, {}, directory);
}

}  // namespace velora
