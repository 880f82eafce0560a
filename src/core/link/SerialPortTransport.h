#pragma once

#include "core/link/Transport.h"

#include <QSerialPort>

namespace velora {

// What both back-ends share: a QSerialPort at "<baud>, E, 8, 1", opened with what failed and
// the system's reason when it does not open.
class SerialPortTransport : public Transport {
    Q_OBJECT
public:
    explicit SerialPortTransport(LinkState& state, QObject* parent = nullptr);

    OpenResult open(const QString& device, int baudRate) override;
    void close() override;
    [[nodiscard]] bool isOpen() const override;
    [[nodiscard]] LowLatency lowLatency() const override { return lowLatency_; }

protected:
    [[nodiscard]] QSerialPort& port() { return port_; }
    // Called for every readyRead; the back-ends differ only here and in send().
    virtual void readAvailable() = 0;
    // Received bytes are read and dropped while every axis is addressed: no drive answers then.
    [[nodiscard]] bool discardsInput() const;
    // Hands a completed reply text on.
    void deliver(const QByteArray& text);

private:
    // Even parity, 8 data bits, 1 stop bit, no flow control.
    [[nodiscard]] bool configureFrame(const QString& device);

    void onPortError(QSerialPort::SerialPortError error);

    QSerialPort port_;
    LowLatency lowLatency_ = LowLatency::NotApplicable;
    bool lossPending_ = false;
};

}  // namespace velora
