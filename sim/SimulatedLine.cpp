#include "sim/SimulatedLine.h"

namespace velora::sim {

namespace {

constexpr int TickMs = 10;
constexpr char Stx = 0x02;
constexpr char Etx = 0x03;

}  // namespace

SimulatedLine::SimulatedLine(const SimOptions& options, QObject* parent)
    : QObject(parent),
      bus_(options.axes, options.version),
      writer_(port_),
      devicePathOption_(options.devicePath) {
    bus_.setFast(options.fast);
    bus_.faults() = options.faults;
    writer_.setPaced(!options.fast);
    tick_.setInterval(TickMs);
    connect(&tick_, &QTimer::timeout, this, &SimulatedLine::onTick);
    connect(&port_, &PtyPort::bytesReceived, this, &SimulatedLine::onBytes);
    connect(&writer_, &PacedWriter::frameSent, this, [this](const QByteArray& frame) {
        emit replySent(QString::fromLatin1(frame.mid(1, frame.size() - 2)));
    });
}

bool SimulatedLine::open() {
    bool opened = false;
    if (devicePathOption_.isEmpty()) {
        opened = port_.openPseudoTerminal();
    } else {
        // A real line runs at one rate; it is the first drive's.
        deviceBaud_ = bus_.driveCount() > 0 ? bus_.driveAt(0).baudRate() : 9600;
        opened = port_.openDevice(devicePathOption_, deviceBaud_);
    }
    if (!opened)
        return false;
    reader_.clear();
    clock_.start();
    simulatedMs_ = 0;
    tick_.start();
    return true;
}

void SimulatedLine::close() {
    tick_.stop();
    writer_.clear();
    port_.close();
}

void SimulatedLine::onBytes(const QByteArray& bytes) {
    for (const QString& text : reader_.feed(bytes)) {
        emit commandReceived(text);
        send(bus_.receive(text, port_.lineSettings()), static_cast<int>(text.size()) + 2);
    }
    // A reset may have changed the first drive's rate; a device line follows it.
    if (deviceBaud_ != 0 && bus_.driveCount() > 0 && bus_.driveAt(0).baudRate() != deviceBaud_) {
        deviceBaud_ = bus_.driveAt(0).baudRate();
        port_.setDeviceBaud(deviceBaud_);
    }
}

void SimulatedLine::onTick() {
    // Whole milliseconds of wall time, so the drives never drift from the clock.
    const qint64 now = clock_.elapsed();
    const int step = static_cast<int>(now - simulatedMs_);
    if (step <= 0)
        return;
    simulatedMs_ = now;
    send(bus_.advance(step), 0);
}

void SimulatedLine::send(const QList<OutgoingReply>& replies, int requestCharacters) {
    const qint64 now = PacedWriter::nowNs();
    for (const OutgoingReply& r : replies) {
        // A pseudo-terminal hands the request over at once; on a line the drive hears it only
        // when its last character has arrived, and answers after its reply wait.
        const qint64 heard =
            writer_.paced() ? now + requestCharacters * PacedWriter::characterNs(r.baud) : now;
        writer_.enqueue(Stx + r.text + Etx, r.baud, heard + qint64{r.delayMs} * 1000000);
    }
}

}  // namespace velora::sim
