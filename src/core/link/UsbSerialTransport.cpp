#include "core/link/UsbSerialTransport.h"

#include "core/link/ReplyAssembly.h"
#include "core/link/WireFormat.h"
#include "core/shared/LinkState.h"

namespace velora {

namespace {
// Long enough for a 32-byte frame to reach the driver at the slowest rate.
constexpr int kWriteWaitMs = 200;
}  // namespace

UsbSerialTransport::UsbSerialTransport(LinkState& state, QObject* parent)
    : SerialPortTransport(state, parent) {
    connect(&port(), &QSerialPort::errorOccurred, this, &UsbSerialTransport::onError);
}

OpenResult UsbSerialTransport::open(const QString& device, int baudRate) {
    OpenResult result = SerialPortTransport::open(device, baudRate);
    if (result.ok)
        setTransmitEnable(true);
    return result;
}

bool UsbSerialTransport::send(const QByteArray& frame) {
    if (frame.size() > wire::MaxCommandLength + 2 || !isOpen())
        return false;
    setTransmitEnable(true);
    if (port().write(frame) != frame.size())
        return false;
    state().ReceiveBuffer.clear();
    return port().waitForBytesWritten(kWriteWaitMs);
}

void UsbSerialTransport::transmissionDone() {
    setTransmitEnable(false);
}

void UsbSerialTransport::setTransmitEnable(bool on) {
    // Ports without modem lines (pseudo-terminals, some adapters) refuse RTS; the line is a
    // courtesy to adapters that need it, so a refusal never fails the send.
    if (isOpen() && !port().setRequestToSend(on))
        port().clearError();
}

bool UsbSerialTransport::clearReceiveSpool() {
    return isOpen() && port().clear(QSerialPort::Input);
}

void UsbSerialTransport::onError(QSerialPort::SerialPortError error) {
    if (error != QSerialPort::ReadError)
        return;
    port().clearError();
    receiveError_ = true;
    readAvailable();
}

void UsbSerialTransport::readAvailable() {
    if (receiveError_) {
        receiveError_ = false;
        emit consoleNote(clearReceiveSpool() ? QStringLiteral("Receive spool clear OK.")
                                             : QStringLiteral("Receive spool clear error."));
        return;
    }
    const QByteArray chunk = port().readAll();
    if (discardsInput() || chunk.isEmpty())
        return;
    const assembly::ChunkOutcome outcome = assembly::feedChunk(state().ReceiveBuffer, chunk);
    if (!outcome.reply)
        return;
    if (outcome.dropsRest)
        clearReceiveSpool();
    deliver(*outcome.reply);
}

}  // namespace velora
