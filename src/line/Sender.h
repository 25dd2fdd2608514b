#pragma once
// How a protocol puts bytes on the line. They go out in the order of the calls, as soon as the line takes them; no call
// waits. Monitor thread.

#include "base/Clock.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace tarvin {

class Sender {
public:
    virtual ~Sender() = default;

    // Queues the bytes of a protocol text; no formatting, a percent sign is a byte like any other.
    virtual void SendText(std::string_view text) = 0;
    // Queues one byte. With `continuation` it stays on the trace line of the byte before it.
    virtual void SendChar(std::uint8_t byte, bool continuation) = 0;
    // Queues a block of file bytes. It is written once the driver has sent everything before it and `delay` has passed
    // after that. `askedCount` is the block size that the trace names. Requires IsEmpty().
    virtual void SendBlock(int askedCount, std::span<const std::uint8_t> bytes, Clock::Duration delay) = 0;

    // Whether the driver has accepted everything.
    virtual bool IsEmpty() const = 0;
    // Has what a held line did not take written with the next look.
    virtual void Retry() = 0;

    // Adds a line of our own to the trace.
    virtual void Note(std::string_view text) = 0;
};

}
