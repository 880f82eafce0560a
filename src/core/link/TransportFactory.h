#pragma once

#include "core/link/Transport.h"

#include <functional>
#include <memory>

namespace velora {

class LinkEngine;

// Makes the serial back-end of a kind. The application uses createTransport; tests hand in
// their own.
using TransportFactory = std::function<std::unique_ptr<Transport>(BackEnd, LinkState&)>;

// The real back-end of a kind, over QSerialPort.
[[nodiscard]] std::unique_ptr<Transport> createTransport(BackEnd backEnd, LinkState& state);

// Gives the engine the back-end that UsbMode asks for. A back-end of the right kind is kept
// as it is (open or closed); one of the other kind is replaced, which closes it.
void applyBackEnd(LinkEngine& engine, const TransportFactory& factory);

}  // namespace velora
