#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

namespace velora {

struct LinkState;

// Which serial back-end carries the link.
enum class BackEnd { Rs232, UsbSerial };

// What opening a port came to: the device tried and, on failure, the system's reason.
struct OpenResult {
    bool ok = false;
    QString device;
    QString reason;
};

// The serial port behind the link. A back-end frames nothing itself: it writes the frame it is
// given, assembles received bytes into reply texts in the shared receive buffer and reports each
// complete reply once. Tests substitute their own implementation.
class Transport : public QObject {
    Q_OBJECT
public:
    explicit Transport(LinkState& state, QObject* parent = nullptr);
    ~Transport() override;
    Q_DISABLE_COPY_MOVE(Transport)

    [[nodiscard]] virtual BackEnd backEnd() const = 0;
    virtual OpenResult open(const QString& device, int baudRate) = 0;
    virtual void close() = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;

    // Writes one frame; false when the back-end reports the write failed.
    virtual bool send(const QByteArray& frame) = 0;
    // The frame has left the line (end-of-transmission timer).
    virtual void transmissionDone() {}
    // The transmit enable line; only the USB-RS232C back-end drives it.
    virtual void setTransmitEnable(bool /*on*/) {}
    // Drops what the port has received but not yet read.
    virtual bool clearReceiveSpool() { return true; }

    // Where the two-letter code stands in a partly received reply (0-based).
    [[nodiscard]] int codeOffset() const { return backEnd() == BackEnd::UsbSerial ? 2 : 1; }

signals:
    // One complete reply text: axis character, code, data; no frame bytes.
    void replyReceived(const QString& text);
    // Text for the console's reply box (the USB-RS232C receive error report).
    void consoleNote(const QString& text);
    // The device went away under the open port (an adapter pulled out): the port is unusable.
    void portLost(const QString& reason);

protected:
    [[nodiscard]] LinkState& state() const { return state_; }

private:
    LinkState& state_;
};

// Creates the back-end the settings ask for.
[[nodiscard]] std::unique_ptr<Transport> createTransport(BackEnd backEnd, LinkState& state);

}  // namespace velora
