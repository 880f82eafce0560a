#include "core/shared/SafeFileWrite.h"

#include <QSaveFile>

namespace velora {

bool writeFileSafely(const QString& path, const QByteArray& content) {
    // A short write shows only in flush(); Qt 6.4's commit() alone would still rename the half
    // file into place. Left uncommitted, the new file is removed.
    QSaveFile out(path);
    return out.open(QIODevice::WriteOnly) && out.write(content) == content.size() && out.flush() &&
           out.commit();
}

}  // namespace velora
