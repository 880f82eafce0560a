#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace velora {

// One serial device of the system as the comm settings dialog lists it under the port number,
// so that the user sees which number opens which device.
struct PortHint {
    QString portName;     // "ttyUSB0", "COM3"
    QString description;  // what the system calls it; may be empty
    std::optional<quint16> vendorId;
    std::optional<quint16> productId;
    QString manufacturer;
    QString serialNumber;    // the USB adapter's own serial number; may be empty
    QString systemLocation;  // the device to open: "/dev/ttyUSB0", "\\\\.\\COM3"

    // The serial ports the system has now.
    [[nodiscard]] static QList<PortHint> systemPorts();

    // The port number that opens this device: COMn is n; ttySn and ttyUSBn are n + 1 (the
    // RS-232C and USB-RS232C back-ends count from 1). Other devices have no number.
    [[nodiscard]] std::optional<int> portNumber() const;
    // "1 (USB-RS232C): ttyUSB0  FT232R USB UART  (USB 0403:6001)"
    [[nodiscard]] QString line() const;
    // "0403:6001", or empty when the port is not a USB device.
    [[nodiscard]] QString usbId() const;
};

}  // namespace velora
