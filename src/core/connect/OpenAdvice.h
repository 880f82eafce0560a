#pragma once

namespace velora {

class LinkEngine;

// Has the engine follow the reason of every failed opening with the line that says what to do
// (ConnectionCheck::adviceForFailedOpen), in the link's language.
void adviseOpenFailures(LinkEngine& engine);

}  // namespace velora
