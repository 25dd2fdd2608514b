#include "line/TransmitQueue.h"

#include <cassert>

namespace tarvin {

void TransmitQueue::SendChar(std::uint8_t byte, bool continuation) {
    bytes.push_back(byte);
    recorder.SentByte(byte, continuation);
    writePending = true;
}

void TransmitQueue::SendText(std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
    recorder.SentText(text);
    writePending = writePending || !text.empty();
}

void TransmitQueue::SendBlock(int askedCount, std::span<const std::uint8_t> block, Clock::Duration delay) {
    assert(IsEmpty());
    bytes.insert(bytes.end(), block.begin(), block.end());
    recorder.SentBlock(askedCount, block);
    writePending = true;
    if (delay > Clock::Duration::zero())
        delayAfterDrain = delay;
}

void TransmitQueue::Consume(std::size_t byteCount) {
    assert(byteCount <= bytes.size() - first);
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
