#pragma once
// The bytes that wait for the line, with their mirror for trace and log. Knows nothing of ports or protocols.
// Monitor thread only.

#include "base/Clock.h"
#include "line/LineRecorder.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace tarvin {

class TransmitQueue {
public:
    explicit TransmitQueue(LineRecorder& lineRecorder) : recorder(lineRecorder) {}

    // Queues one byte. `continuation` keeps it on the trace line that the byte before it opened.
    void Append(std::uint8_t byte, bool continuation);
    // Queues the bytes of a protocol text.
    void AppendText(std::string_view text);
    // Queues a block of file bytes that is not to be written before the driver has sent all it holds and `delay` has
    // passed after that. `askedCount` is the block size that the trace names. The queue is empty when it is called.
    void AppendBlock(int askedCount, std::span<const std::uint8_t> bytes, Clock::Duration delay);

    // The bytes not yet accepted by the driver, oldest first. Valid until the next call that is not const.
    std::span<const std::uint8_t> Pending() const { return std::span(bytes).subspan(first); }
    bool IsEmpty() const { return first == bytes.size(); }
    // Drops the first `byteCount` bytes, which the driver has taken. More than are pending is a caller's error.
    void Consume(std::size_t byteCount);
    void Clear();

    // Set by each queuing, cleared by each attempt to write: bytes that a held line did not take wait for the next
    // queuing, or for whoever knows that the line goes on.
    bool IsWritePending() const { return writePending; }
    void SetWritePending(bool isPending) { writePending = isPending; }

    // To be told at each look at the line whether the driver holds nothing any more. From the first such look after a
    // block was queued its delay runs.
    void DriverDrained(Clock::TimePoint now);
    bool AwaitsDrain() const { return delayAfterDrain.has_value(); }
    bool IsDue(Clock::TimePoint now) const;
    // When the pending bytes may be written; none if that does not depend on time alone.
    std::optional<Clock::TimePoint> DueTime() const { return notBefore; }

private:
    LineRecorder& recorder;
    std::vector<std::uint8_t> bytes;
    std::size_t first = 0;
    bool writePending = false;
    std::optional<Clock::Duration> delayAfterDrain;
    std::optional<Clock::TimePoint> notBefore;
};

}
