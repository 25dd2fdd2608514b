#pragma once
// Mirrors the bytes on the line into the trace of the window and into the comms log. Costs next to nothing while both
// are off. Monitor thread.

#include "line/LineTrace.h"
#include "logging/LogLines.h"
#include "port/SerialPort.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tarvin {

class LineRecorder {
public:
    LineRecorder(LineTrace& trace, LogLines& log) : trace(trace), log(log) {}

    void Received(std::span<const std::uint8_t> bytes);
    // A text is one line of the log. A single byte or a block of file bytes waits for more until FlushPending, or until
    // something is received.
    void SentText(std::string_view text);
    void SentByte(std::uint8_t byte, bool continuation);
    void SentBlock(int askedCount, std::span<const std::uint8_t> bytes);
    // Logs and traces the name and new value of each hold that has changed.
    void HoldsChanged(const LineHolds& previous, const LineHolds& present);
    // Bytes that were mirrored as sent have been removed before they left.
    void Dropped(std::size_t byteCount);
    // A line for the trace alone.
    void Note(std::string_view text) { trace.Note(text); }
    void EndTraceLine() { trace.EndLine(); }
    // Writes waiting transmit text to the log. Called before a log ends.
    void FlushPending();

private:
    void AddPending(std::uint8_t byte);

    // Bounds the waiting text, however long the line is held.
    static constexpr std::size_t longestPending = 64 * 1024;

    LineTrace& trace;
    LogLines& log;
    std::string pendingTransmitText;
};

}
