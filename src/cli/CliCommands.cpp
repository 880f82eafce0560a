#include "cli/CliCommand.h"

namespace velora::cli {

QList<CliCommand> cliCommands() {
    QList<CliCommand> all;
    all << scanCommand();
    all << paramsCommands();
    all << pointsCommands();
    all << comTableCommands();
    all << sendCommand();
    all << monitorCommand();
    all << waveCommand();
    all << doctorCommand();
    return all;
}

}  // namespace velora::cli
