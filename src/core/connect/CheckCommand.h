#pragma once

#include <QString>

class QTextStream;

namespace velora {

class SettingsStore;

// The connection check from the command line (velora --check): the port the settings open, or
// device when given, checked and printed one finding a line in English. Returns the process's
// exit code: 0 when nothing is wrong, 1 when a problem was found. With search, a silent drive
// is then looked for at every axis and rate.
[[nodiscard]] int runCheckCommand(const SettingsStore& settings, const QString& device, bool search,
                                  QTextStream& out);

}  // namespace velora
