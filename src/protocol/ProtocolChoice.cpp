#include "protocol/ProtocolChoice.h"

#include "protocol/RawProtocol.h"
#include "protocol/TarvinApp.h"

namespace tarvin {

std::unique_ptr<Protocol> MakeProtocol(const ProtocolParts& parts) {
    if (IsByHand(parts.settings))
        return std::make_unique<RawProtocol>(parts);
    return std::make_unique<TarvinApp>(parts);
}

}
