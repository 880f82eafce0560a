#include "core/link/TransportFactory.h"

#include "core/link/LinkEngine.h"
#include "core/shared/LinkState.h"

namespace velora {

TransportFactory serialTransports() {
    return [](BackEnd backEnd, LinkState& state) { return createTransport(backEnd, state); };
}

void applyBackEnd(LinkEngine& engine, const TransportFactory& factory) {
    const BackEnd wanted = engine.state().UsbMode ? BackEnd::UsbSerial : BackEnd::Rs232;
    const Transport* current = engine.transport();
    if (current && current->backEnd() == wanted)
        return;
    engine.setTransport(factory(wanted, engine.state()));
}

}  // namespace velora
