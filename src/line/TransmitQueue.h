#pragma once
// The bytes that wait for the line, mirrored for trace and log. Monitor thread.

#include "line/LineRecorder.h"
#include "line/Sender.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace tarvin {

class TransmitQueue : public Sender {
public:
    explicit TransmitQueue(LineRecorder& recorder) : recorder(recorder) {}

    void SendText(std::string_view text) override;
    void SendChar(std::uint8_t byte, bool continuation) override;
    void SendBlock(int askedCount, std::span<const std::uint8_t> bytes, Clock::Duration delay) override;
    bool IsEmpty() const override { return first == bytes.size(); }
    void Retry() override { writePending = true; }
    void Note(std::string_view text) override { recorder.Note(text); }

    // Bytes that the driver has not accepted yet, oldest first. Valid until the next non-const call.
    std::span<const std::uint8_t> Pending() const { return std::span(bytes).subspan(first); }
    // Removes the first `byteCount` bytes. Requires byteCount <= Pending().size().
    void Consume(std::size_t byteCount);
    void Clear();

    // Set by each queuing and by Retry. The line clears it with each attempt to write, so bytes that a held line did
    // not take wait for the next queuing or for Retry.
    bool IsWritePending() const { return writePending; }
    void EndWrite() { writePending = false; }

    // The driver holds no bytes at `now`. The first such moment after a block was queued starts the delay of the block.
    void DriverDrained(Clock::TimePoint now);
    // A queued block waits for the driver to drain, before its delay starts.
    bool AwaitsDrain() const { return delayAfterDrain.has_value(); }
    // Whether the pending bytes may be written as far as delays are concerned.
    bool IsDue(Clock::TimePoint now) const;
    // The time at which a delay ends; none without a delay, or while the driver still has to drain.
    std::optional<Clock::TimePoint> DueTime() const { return notBefore; }

private:
    LineRecorder& recorder;
    std::vector<std::uint8_t> bytes;
    std::size_t first = 0; // of the pending bytes
    bool writePending = false;
    std::optional<Clock::Duration> delayAfterDrain;
    std::optional<Clock::TimePoint> notBefore;
};

}
