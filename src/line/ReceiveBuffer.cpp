#include "line/ReceiveBuffer.h"

#include <algorithm>

namespace tarvin {

std::optional<std::string> ReceiveBuffer::TakeMessage(std::uint8_t terminator, bool keepTerminator) {
    const auto held = Bytes();
    const auto found = std::find(held.begin(), held.end(), terminator);
    if (found == held.end())
        return std::nullopt;
    std::string message;
    for (auto byte = held.begin(); byte <= found; ++byte) {
        const bool isPrintable = *byte >= 0x20 && *byte <= 0x7E;
        if (isPrintable || (byte == found && keepTerminator))
            message.push_back(static_cast<char>(*byte));
    }
    const auto rest = found + 1;
    std::copy(rest, held.end(), bytes.begin());
    count = static_cast<std::size_t>(held.end() - rest);
    return message;
}

}
