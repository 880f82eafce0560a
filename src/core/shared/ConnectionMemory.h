#pragma once

#include <QString>

namespace velora {

// What the program remembers about the serial connection beyond the port number (settings
// group "Connection"): a device chosen from the port list that no port number names, and the
// USB adapter last opened, so that it is found again under another device name.
struct ConnectionMemory {
    QString Device;         // opened instead of the port number's device when not empty
    QString AdapterSerial;  // the adapter's USB serial number
    QString AdapterDevice;  // where that adapter was last opened
};

}  // namespace velora
