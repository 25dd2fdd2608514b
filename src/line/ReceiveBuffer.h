#pragma once
// The received bytes that no message has taken yet. Monitor thread.

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tarvin {

class ReceiveBuffer {
public:
    static constexpr std::size_t capacity = 4000;

    // Free space behind the held bytes. Valid until the next non-const call; Commit says how much of it was filled.
    std::span<std::uint8_t> Room() { return std::span(bytes).subspan(count); }
    // Requires byteCount <= Room().size().
    void Commit(std::size_t byteCount) {
        assert(byteCount <= capacity - count);
        count += byteCount;
    }

    std::span<const std::uint8_t> Bytes() const { return std::span(bytes).first(count); }
    std::size_t Count() const { return count; }
    void Clear() { count = 0; }

    // Removes everything up to and including the first `terminator` and returns its bytes from 0x20 to 0x7E, which may
    // be none. A terminator outside that range is returned too if `keepTerminator` says so. No value, with the buffer
    // unchanged, if there is no terminator yet.
    std::optional<std::string> TakeMessage(std::uint8_t terminator, bool keepTerminator);

private:
    std::array<std::uint8_t, capacity> bytes = {};
    std::size_t count = 0;
};

}
