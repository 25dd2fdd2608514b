#pragma once
// Turns what crosses the line into trace lines. Costs next to nothing while nobody reads them. Knows nothing of ports.
// Monitor thread only.

#include "line/TrafficQueue.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace tarvin {

class LineTrace {
public:
    // `arrived` is called when the reader of the queue has to be woken.
    LineTrace(TrafficQueue& traffic, std::function<void()> arrived) : queue(traffic), wakeReader(std::move(arrived)) {}

    // Whether anybody reads the lines.
    bool IsWanted() const { return queue.IsWanted(); }
    void Note(std::string_view text);
    // A line of received bytes as they are to be read.
    void Received(std::string line);

    // One transmitted byte. Without `continuation`, or if no line is open, it opens a line; a line feed and a length of
    // 256 characters end it.
    void Sent(std::uint8_t byte, bool continuation);
    // After a text has been sent: the line stays open for the next one unless the text ended it.
    void TextSent(std::uint8_t lastByte) { continues = lastByte != '\n'; }

    // A block of file bytes is a line of its own, headed by the number of bytes that were asked for.
    void Block(int byteCount, std::span<const std::uint8_t> bytes);

    // Ends the open line, if there is one.
    void EndLine();
    // Shows what there is of the open line: who looks for an answer must not wait for what follows it.
    void ShowOpenLine();

private:
    void Push(TrafficLine line);

    TrafficQueue& queue;
    std::function<void()> wakeReader;
    std::string openLine;
    std::size_t shownLength = 0; // of the open line
    bool continues = false;
};

}
