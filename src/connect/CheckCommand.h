#pragma once

#include <QString>

class QTextStream;

namespace velora {

class SettingsStore;

// The connection check from the command line (velora --check): the port the settings open, or
// device when given, checked and printed one finding a line in English. Returns the process's
// exit code: 0 when nothing is wrong, 1 when a problem was found.
[[nodiscard]] int runCheckCommand(const SettingsStore& settings, const QString& device,
                                  QTextStream& out);

}  // namespace velora
