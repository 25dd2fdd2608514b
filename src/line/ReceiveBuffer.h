#pragma once
// The bytes received and not yet handled. Knows nothing of ports or protocols. Monitor thread only.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace tarvin {

class ReceiveBuffer {
public:
    static constexpr std::size_t capacity = 4000;

    // Where the next bytes go; Commit says how many came. Valid until the next call that is not const.
    std::span<std::uint8_t> Room() { return std::span(bytes).subspan(count); }
    void Commit(std::size_t byteCount) { count += byteCount; }

    std::span<const std::uint8_t> Bytes() const { return std::span(bytes).first(count); }
    std::size_t Count() const { return count; }
    void Clear() { count = 0; }

    // Moves everything up to and including the first `terminator` out of the buffer. `message` receives its bytes from
    // 0x20 to 0x7E; a terminator outside that range stays in it only if `keepTerminator`. Returns the message's length;
    // 0 with the buffer unchanged if there is no terminator.
    std::size_t ExtractMessage(std::uint8_t terminator, bool keepTerminator, std::string& message);

private:
    std::array<std::uint8_t, capacity> bytes = {};
    std::size_t count = 0;
};

}
