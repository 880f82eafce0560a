#include "cli/CliCommand.h"

namespace velora::cli {

QList<CliCommand> cliCommands() {
    QList<CliCommand> all;
    all << scanCommand();
    all << paramsCommands();
    all << sendCommand();
    all << monitorCommand();
    return all;
}

}  // namespace velora::cli
