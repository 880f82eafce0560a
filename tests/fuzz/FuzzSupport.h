#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

// Shared by every fuzz target: the application object the core's timers and settings need, a
// scratch directory for the file readers, and an invariant check that stops the run with the
// broken rule's text (libFuzzer keeps the input that caused it).
namespace velora::fuzz {

inline void ensureApplication() {
    static int argc = 1;
    static char name[] = "velora-fuzz";
    static char* argv[] = {name, nullptr};
    static QCoreApplication* app = QCoreApplication::instance() ? QCoreApplication::instance()
                                                                : new QCoreApplication(argc, argv);
    (void)app;
}

// A file holding `bytes`, rewritten for each input.
inline QString scratchFile(const QString& name, const uint8_t* data, size_t size) {
    // In memory where the system offers it: the readers run tens of thousands of times a second.
    static QTemporaryDir dir(QFileInfo(QStringLiteral("/dev/shm")).isWritable()
                                 ? QStringLiteral("/dev/shm/velora-fuzz-XXXXXX")
                                 : QDir::tempPath() + QStringLiteral("/velora-fuzz-XXXXXX"));
    const QString path = dir.filePath(name);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    return path;
}

#define VELORA_FUZZ_CHECK(condition)                                                     \
    do {                                                                                 \
        if (!(condition)) {                                                              \
            std::fprintf(stderr, "invariant broken: %s (%s:%d)\n", #condition, __FILE__, \
                         __LINE__);                                                      \
            std::abort();                                                                \
        }                                                                                \
    } while (false)

}  // namespace velora::fuzz
