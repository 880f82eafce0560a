#include "core/link/Rs232Transport.h"

#include "core/link/ReplyAssembly.h"
#include "core/shared/LinkState.h"

namespace velora {

Rs232Transport::Rs232Transport(LinkState& state, QObject* parent)
    : SerialPortTransport(state, parent) {
}

bool Rs232Transport::send(const QByteArray& frame) {
    // The port would otherwise write the frame only when the event loop next polls it, after
    // whatever repaints are pending: the frame goes to the driver now (flush never blocks).
    // A frame lost on the line shows up as a missing reply, which the supervision re-sends.
    if (!isOpen() || port().write(frame) != frame.size())
        return false;
    port().flush();
    return true;
}

void Rs232Transport::readAvailable() {
    const QByteArray bytes = port().readAll();
    if (discardsInput())
        return;
    for (const char c : bytes) {
        if (auto reply = assembly::feedCharacter(state().ReceiveBuffer, c))
            deliver(*reply);
    }
}

}  // namespace velora
