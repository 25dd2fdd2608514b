#include "line/TransmitQueue.h"

#include <cassert>

namespace tarvin {

void TransmitQueue::AppendChar(std::uint8_t byte, bool continuation) {
    bytes.push_back(byte);
    EndFrame();
    recorder.SentByte(byte, continuation);
}

void TransmitQueue::AppendText(std::string_view text) {
    if (text.empty())
        return;
    bytes.insert(bytes.end(), text.begin(), text.end());
    EndFrame();
    recorder.SentText(text);
}

void TransmitQueue::AppendBlock(int askedCount, std::span<const std::uint8_t> block, Clock::Duration delay) {
    assert(IsEmpty());
    bytes.insert(bytes.end(), block.begin(), block.end());
    EndFrame();
    recorder.SentBlock(askedCount, block);
    if (delay > Clock::Duration::zero())
        delayAfterDrain = delay;
}

void TransmitQueue::Consume(std::size_t byteCount) {
    assert(byteCount <= bytes.size() - first);
    first += byteCount;
    hasBegun = hasBegun || byteCount > 0;
    while (!frameEnds.empty() && frameEnds.front() <= first) {
        hasBegun = first > frameEnds.front();
        frameEnds.pop_front();
    }
    if (IsEmpty())
        Clear();
}

void TransmitQueue::GiveBack(std::span<const std::uint8_t> accepted) {
    if (accepted.empty())
        return;
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(first), accepted.begin(), accepted.end());
    for (std::size_t& end : frameEnds)
        end += accepted.size();
    // If the first frame has begun, these bytes are its beginning.
    if (!hasBegun)
        frameEnds.push_front(first + accepted.size());
    hasBegun = true;
}

void TransmitQueue::DropUnsent() {
    const std::size_t keptEnd = hasBegun && !frameEnds.empty() ? frameEnds.front() : first;
    recorder.Dropped(bytes.size() - keptEnd);
    bytes.resize(keptEnd);
    frameEnds.resize(hasBegun && !frameEnds.empty() ? 1 : 0);
    if (IsEmpty())
        Clear();
}

void TransmitQueue::Clear() {
    bytes.clear();
    first = 0;
    frameEnds.clear();
    hasBegun = false;
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
