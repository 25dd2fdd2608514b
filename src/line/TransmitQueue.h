#pragma once
// The bytes that wait for the line, mirrored for trace and log. Monitor thread.

#include "base/Clock.h"
#include "line/LineRecorder.h"

#include <cstddef>
#include <deque>
#include <optional>
#include <vector>

namespace tarvin {

class TransmitQueue {
public:
    explicit TransmitQueue(LineRecorder& recorder) : recorder(recorder) {}

    // Queue one frame each. See Sender.
    void AppendText(std::string_view text);
    void AppendChar(std::uint8_t byte, bool continuation);
    void AppendBlock(int askedCount, std::span<const std::uint8_t> bytes, Clock::Duration delay);

    bool IsEmpty() const { return first == bytes.size(); }
    // Bytes that the driver has not accepted yet, oldest first. Valid until the next non-const call.
    std::span<const std::uint8_t> Pending() const { return std::span(bytes).subspan(first); }
    // Removes the first `byteCount` bytes. Requires byteCount <= Pending().size().
    void Consume(std::size_t byteCount);
    // Puts bytes back that the driver had accepted and then dropped. They count as the rest of a frame that has begun.
    void GiveBack(std::span<const std::uint8_t> bytes);
    // Removes the frames of which the driver has accepted nothing.
    void DropUnsent();
    void Clear();

    // The driver holds no bytes at `now`. The first such moment after a block was queued starts the delay of the block.
    void DriverDrained(Clock::TimePoint now);
    // A queued block waits for the driver to drain, before its delay starts.
    bool AwaitsDrain() const { return delayAfterDrain.has_value(); }
    // Whether the pending bytes may be written as far as delays are concerned.
    bool IsDue(Clock::TimePoint now) const;
    // The time at which a delay ends; none without a delay, or while the driver still has to drain.
    std::optional<Clock::TimePoint> DueTime() const { return notBefore; }

private:
    void EndFrame() { frameEnds.push_back(bytes.size()); }

    LineRecorder& recorder;
    std::vector<std::uint8_t> bytes;
    std::size_t first = 0;             // of the pending bytes
    bool hasBegun = false;             // the driver has accepted a part of the first frame
    std::deque<std::size_t> frameEnds; // of the frames that are not accepted whole, in `bytes`
    std::optional<Clock::Duration> delayAfterDrain;
    std::optional<Clock::TimePoint> notBefore;
};

}
