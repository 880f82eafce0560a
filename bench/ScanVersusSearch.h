#pragma once

namespace velora::bench {

// The time to find one drive at axis 14 and 115200 baud, the last setting either tries: the
// program's port search (comm settings dialog) against velora-cli scan, both on a real serial
// port on a pseudo-terminal against the paced simulator. Prints one table row each.
void scanVersusSearch();

}  // namespace velora::bench
