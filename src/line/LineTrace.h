#pragma once
// Turns bytes on the line into lines of the trace. Costs next to nothing while the trace is off. Monitor thread.

#include "line/TrafficQueue.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace tarvin {

class LineTrace {
public:
    LineTrace(TrafficQueue& queue, const Clock& clock) : queue(queue), clock(clock) {}

    bool IsWanted() const { return queue.IsWanted(); }
    // True once after lines have come into the empty queue: its reader has to be told.
    bool TakeWakeUp() { return std::exchange(wakesReader, false); }

    void Note(std::string_view text);
    // A line of received bytes, as it is shown.
    void Received(std::string line);

    // One transmitted byte. It starts a new line unless it continues an open one. A line feed ends the line, and so do
    // 256 characters.
    void Sent(std::uint8_t byte, bool continuation);
    // The last byte of a text was sent: the next text continues the line unless a line feed ended it.
    void TextSent(std::uint8_t lastByte) { continues = lastByte != '\n'; }

    // A block of file bytes, as a line of its own. `askedCount` is the block size, which the line names.
    void Block(int askedCount, std::span<const std::uint8_t> bytes);

    // Ends the open line, if there is one.
    void EndLine();
    // Shows the open line as far as it has come, so that an answer is seen when it goes out.
    void ShowOpenLine();

private:
    // Stamps the line with the present time.
    void Push(TrafficLine line);

    TrafficQueue& queue;
    const Clock& clock;
    bool wakesReader = false;
    std::string openLine;
    std::size_t shownLength = 0; // of the open line
    bool continues = false;
};

}
