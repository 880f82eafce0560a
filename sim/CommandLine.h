#pragma once

#include "sim/SimOptions.h"

#include <QCommandLineParser>
#include <QString>

#include <optional>

namespace velora::sim {

// The simulator's command-line options, shared by velora-sim and any host that starts a line
// from its own command line.
class CommandLine {
public:
    // Adds every simulator option to parser.
    static void addOptions(QCommandLineParser& parser);
    // The options from a parser that has processed its arguments; nothing, with error set,
    // when a value is unusable.
    [[nodiscard]] static std::optional<SimOptions> options(const QCommandLineParser& parser,
                                                           QString* error);
};

}  // namespace velora::sim
