#include "core/link/SerialPortTransport.h"

#include "core/link/WireFormat.h"
#include "core/shared/LinkState.h"

#include <QFileInfo>
#include <QTimer>

namespace velora {

SerialPortTransport::SerialPortTransport(LinkState& state, QObject* parent)
    : Transport(state, parent) {
    connect(&port_, &QSerialPort::readyRead, this, &SerialPortTransport::readAvailable);
    connect(&port_, &QSerialPort::errorOccurred, this, &SerialPortTransport::onPortError);
}

void SerialPortTransport::onPortError(QSerialPort::SerialPortError error) {
    if (error != QSerialPort::ResourceError || !port_.isOpen() || lossPending_)
        return;
    lossPending_ = true;
    // Closed from the event loop: the port reports this from inside its own read, which must
    // finish on an open port.
    QTimer::singleShot(0, this, [this, reason = port_.errorString()] {
        lossPending_ = false;
        if (!port_.isOpen())
            return;  // closed on purpose meanwhile
        port_.close();
        emit portLost(reason);
    });
}

OpenResult SerialPortTransport::open(const QString& device, int baudRate) {
    close();
    port_.setPortName(device);
    OpenResult result;
    result.device = device;
    lowLatency_ = LowLatency::NotApplicable;
    if (!port_.open(QIODevice::ReadWrite)) {
        result.error = OpenError::Port;
        result.reason = port_.errorString();
        return result;
    }
    // Where the driver allows it; the link works without, only slower.
    if (isUsbAdapterDevice(device))
        lowLatency_ = requestLowLatency(port_.handle());
    if (!port_.setBaudRate(baudRate) || !configureFrame(device)) {
        result.error = OpenError::Settings;
        result.reason = port_.errorString();
        port_.close();
        return result;
    }
    // What waits in the port from before (a late reply to the last run's command) answers
    // nothing this run asks; the USB adapter's spool is cleared the same way.
    if (!port_.clear(QSerialPort::Input))
        port_.clearError();
    state().ReceiveBuffer.clear();
    result.ok = true;
    return result;
}

bool SerialPortTransport::configureFrame(const QString& device) {
    // Every setting is tried, so one refusal does not leave the others at the port's defaults.
    bool set = port_.setParity(QSerialPort::EvenParity);
    set = port_.setDataBits(QSerialPort::Data8) && set;
    set = port_.setStopBits(QSerialPort::OneStop) && set;
    set = port_.setFlowControl(QSerialPort::NoFlowControl) && set;
    if (set)
        return true;
    // Some kernels refuse parity on pseudo-terminals (the simulator's, under names of their
    // own); there is no wire whose framing could matter, so the line is used as it is.
    const QString location =
        device.startsWith(QLatin1Char('/')) ? device : QStringLiteral("/dev/") + device;
    if (QFileInfo(location).canonicalFilePath().startsWith(QLatin1String("/dev/pts/"))) {
        port_.clearError();
        return true;
    }
    return false;
}

void SerialPortTransport::close() {
    if (port_.isOpen())
        port_.close();
}

bool SerialPortTransport::isOpen() const {
    return port_.isOpen();
}

bool SerialPortTransport::discardsInput() const {
    return state().AxisNumber == wire::AllAxes;
}

void SerialPortTransport::deliver(const QByteArray& text) {
    emit replyReceived(QString::fromLatin1(text));
}

}  // namespace velora
