#pragma once

#include <QByteArray>
#include <QString>

namespace velora {

// Writes a whole file so that a good file at `path` is replaced only once the new one is
// complete on disk: written beside the target and renamed over it at the end, so a full disk or
// a failing device leaves the old file as it was. Returns false when anything failed.
[[nodiscard]] bool writeFileSafely(const QString& path, const QByteArray& content);

}  // namespace velora
