#include "core/link/Transport.h"

#include "core/link/Rs232Transport.h"
#include "core/link/UsbSerialTransport.h"

namespace velora {

Transport::Transport(LinkState& state, QObject* parent) : QObject(parent), state_(state) {
}

Transport::~Transport() = default;

std::unique_ptr<Transport> createTransport(BackEnd backEnd, LinkState& state) {
    if (backEnd == BackEnd::UsbSerial)
        return std::make_unique<UsbSerialTransport>(state);
    return std::make_unique<Rs232Transport>(state);
}

}  // namespace velora
