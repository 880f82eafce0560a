#include "core/link/Transport.h"

namespace velora {

Transport::Transport(LinkState& state, QObject* parent) : QObject(parent), state_(state) {
}

Transport::~Transport() = default;

}  // namespace velora
