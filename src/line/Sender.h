#pragma once
// How a protocol puts bytes on the line. They go out in the order of the calls, as soon as the line takes them; no call
// waits. Without a link nothing is queued. Monitor thread.

#include "base/Clock.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace tarvin {

class Sender {
public:
    virtual ~Sender() = default;

    // Queues the bytes of a protocol text, which is one frame; no formatting, a percent sign is a byte like any other.
    virtual void SendText(std::string_view text) = 0;
    // Queues one byte, which is a frame of its own. With `continuation` it stays on the trace line of the byte before
    // it.
    virtual void SendChar(std::uint8_t byte, bool continuation) = 0;
    // Queues a block of file bytes. It is written once the driver has sent everything before it and `delay` has passed
    // after that. `askedCount` is the block size that the trace names. Requires IsEmpty().
    virtual void SendBlock(int askedCount, std::span<const std::uint8_t> bytes, Clock::Duration delay) = 0;

    // Whether the driver has accepted everything.
    virtual bool IsEmpty() const = 0;
    // Whether the line holds output back, and some of it has not left. Also if far more waits than a line that flows
    // ever leaves waiting.
    virtual bool IsHeldUp() const = 0;
    // Removes the frames that have not begun to leave. The rest of one that has begun stays: without its end the
    // controller would take the next frame for its continuation.
    virtual void DropUnsent() = 0;
    // Ends a hold by XOFF that is 10 s old, as if XON had come. A controller that speaks has lost its XON, or a noise
    // byte looked like an XOFF.
    virtual void EndOldHold() = 0;

    // Adds a line of our own to the trace.
    virtual void Note(std::string_view text) = 0;
};

}
