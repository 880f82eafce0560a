#include "core/link/TransportFactory.h"

#include "core/link/LinkEngine.h"
#include "core/link/Rs232Transport.h"
#include "core/link/UsbSerialTransport.h"
#include "core/shared/LinkState.h"

namespace velora {

std::unique_ptr<Transport> createTransport(BackEnd backEnd, LinkState& state) {
    if (backEnd == BackEnd::UsbSerial)
        return std::make_unique<UsbSerialTransport>(state);
    return std::make_unique<Rs232Transport>(state);
}

void applyBackEnd(LinkEngine& engine, const TransportFactory& factory) {
    const BackEnd wanted = engine.state().UsbMode ? BackEnd::UsbSerial : BackEnd::Rs232;
    const Transport* current = engine.transport();
    if (current && current->backEnd() == wanted)
        return;
    engine.setTransport(factory(wanted, engine.state()));
}

}  // namespace velora
