#pragma once
// The protocol for a kind of controller. Monitor thread.

#include "protocol/Protocol.h"

namespace tarvin {

// The protocol that the settings in `parts` ask for: RawProtocol for any machine that is served by hand, TarvinApp for
// all other kinds.
std::unique_ptr<Protocol> MakeProtocol(const ProtocolParts& parts);

}
