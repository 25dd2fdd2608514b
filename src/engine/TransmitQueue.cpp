#include "engine/TransmitQueue.h"

namespace tarvin {

void TransmitQueue::Append(std::uint8_t byte, bool continuation) {
    bytes.push_back(byte);
    trace.Sent(byte, continuation);
    writePending = true;
}

void TransmitQueue::AppendText(std::string_view text) {
    for (const char character : text)
        Append(static_cast<std::uint8_t>(character), true);
    if (!text.empty())
        trace.TextSent(static_cast<std::uint8_t>(text.back()));
}

void TransmitQueue::AppendBlock(int askedCount, std::span<const std::uint8_t> block, Clock::Duration delay) {
    bytes.insert(bytes.end(), block.begin(), block.end());
    trace.Block(askedCount, block);
    writePending = true;
    if (delay > Clock::Duration::zero())
        delayAfterDrain = delay;
}

void TransmitQueue::Consume(std::size_t byteCount) {
    first += byteCount;
    if (IsEmpty())
        Clear();
}

void TransmitQueue::Clear() {
    bytes.clear();
    first = 0;
    delayAfterDrain.reset();
    notBefore.reset();
}

void TransmitQueue::DriverDrained(Clock::TimePoint now) {
    if (!delayAfterDrain)
        return;
    notBefore = now + *delayAfterDrain;
    delayAfterDrain.reset();
}

bool TransmitQueue::IsDue(Clock::TimePoint now) const {
    return !delayAfterDrain && (!notBefore || now >= *notBefore);
}

}
