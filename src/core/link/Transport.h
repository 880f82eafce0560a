#pragma once

#include "core/link/LowLatency.h"

#include <QByteArray>
#include <QObject>
#include <QString>

namespace velora {

struct LinkState;

// Which serial back-end carries the link.
enum class BackEnd { Rs232, UsbSerial };

// What failed when a port did not open.
enum class OpenError {
    None,
    Port,      // the device could not be opened
    Settings,  // the device opened but refused the rate or the framing
};

// What opening a port came to: the device tried and, on failure, what failed and the system's
// reason. Above the link a line that says what to do may follow the reason.
struct OpenResult {
    bool ok = false;
    QString device;
    QString reason;
    OpenError error = OpenError::None;

    // Puts advice on its own line after the reason; an empty one adds nothing.
    void advise(const QString& advice) {
        if (!advice.isEmpty())
            reason += QLatin1Char('\n') + advice;
    }
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
    // The latency mode the port was last opened in.
    [[nodiscard]] virtual LowLatency lowLatency() const { return LowLatency::NotApplicable; }

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

}  // namespace velora
