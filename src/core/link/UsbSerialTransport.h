#pragma once

#include "core/link/SerialPortTransport.h"

namespace velora {

// The USB-to-RS-232C adapter: replies are assembled by chunks, the receive spool is cleared
// after each reply, and RTS serves as the transmit enable line while a frame is sent.
class UsbSerialTransport : public SerialPortTransport {
    Q_OBJECT
public:
    explicit UsbSerialTransport(LinkState& state, QObject* parent = nullptr);

    [[nodiscard]] BackEnd backEnd() const override { return BackEnd::UsbSerial; }
    OpenResult open(const QString& device, int baudRate) override;
    bool send(const QByteArray& frame) override;
    void transmissionDone() override;
    void setTransmitEnable(bool on) override;
    bool clearReceiveSpool() override;

protected:
    void readAvailable() override;

private:
    void onError(QSerialPort::SerialPortError error);

    bool receiveError_ = false;
};

}  // namespace velora
