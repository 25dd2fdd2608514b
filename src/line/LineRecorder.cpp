#include "line/LineRecorder.h"

#include "logging/LogText.h"

#include <utility>

namespace tarvin {

namespace {

constexpr std::size_t longestPiece = 1000;

}

void LineRecorder::Received(std::span<const std::uint8_t> bytes) {
    if (!log.IsOpen() && !trace.IsWanted())
        return;
    FlushPending();
    std::string line = "RX ";
    AppendTraffic(line, bytes);
    log.LogLine(line, true);
    trace.Received(std::move(line));
}

void LineRecorder::SentText(std::string_view text) {
    if (log.IsOpen()) {
        FlushPending();
        for (const char character : text)
            AddPending(static_cast<std::uint8_t>(character));
        FlushPending();
    }
    for (const char character : text)
        trace.Sent(static_cast<std::uint8_t>(character), true);
    if (!text.empty())
        trace.TextSent(static_cast<std::uint8_t>(text.back()));
}

void LineRecorder::SentByte(std::uint8_t byte, bool continuation) {
    AddPending(byte);
    trace.Sent(byte, continuation);
}

void LineRecorder::SentBlock(int askedCount, std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes)
        AddPending(byte);
    trace.Block(askedCount, bytes);
}

void LineRecorder::AddPending(std::uint8_t byte) {
    if (!log.IsOpen())
        return;
    AppendTraffic(pendingTransmitText, byte);
    if (pendingTransmitText.size() >= longestPending)
        FlushPending();
}

void LineRecorder::FlushPending() {
    if (pendingTransmitText.empty())
        return;
    // Only the first piece names the direction, and its name counts.
    const std::string text = "TX " + std::exchange(pendingTransmitText, {});
    // Pieces of one text may well be equal: only a text that is a line by itself can be the repetition of another.
    const bool hasPieces = text.size() > longestPiece;
    for (std::size_t start = 0; start < text.size(); start += longestPiece)
        log.LogLine(std::string_view(text).substr(start, longestPiece), hasPieces);
}

void LineRecorder::HoldsChanged(const LineStatus& previous, const LineStatus& present) {
    if (!log.IsOpen())
        return;
    std::string line;
    const auto note = [&](const char* name, bool before, bool now) {
        if (before != now)
            line += std::string(name) + (now ? "=1  " : "=0  ");
    };
    note("CTS Hold", previous.ctsHold, present.ctsHold);
    note("DSR Hold", previous.dsrHold, present.dsrHold);
    note("RLS Hold", previous.rlsdHold, present.rlsdHold);
    note("XOff Hold", previous.xoffHold, present.xoffHold);
    note("XOff Sent", previous.xoffSent, present.xoffSent);
    log.LogLine(line, true);
}

}
