
#include "core/shared/TextId.h"
#pragma once

class QByteArray;
class QString;

namespace velora {

class BoundedLineReader;
class LinkEngine;

// The writing, the opening and the failure messages that the point table and command table
// files share, so that both report the same failures in the same way.
namespace tablefile {

// Shows catalogue message `text` under catalogue caption `caption`, in the link's language.
void showError(LinkEngine& engine, Text text, Text caption);

// Write File: an existing file is replaced only once the whole new one is on disk. Returns
// false for an empty path (silently) or a failure (after the message).
bool write(LinkEngine& engine, const QString& path, const QByteArray& content);

// Opens `path` and checks its first line against `identification`. Returns false after the
// message: the read failure's, or `wrongText` under `wrongCaption` for another file's line.
[[nodiscard]] bool open(LinkEngine& engine, BoundedLineReader& file, const QString& path,
                        const QByteArray& identification, Text wrongText, Text wrongCaption);

}  // namespace tablefile

}  // namespace velora
