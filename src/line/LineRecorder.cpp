#include "line/LineRecorder.h"

#include "base/Messages.h"
#include "logging/LogText.h"

#include <utility>

namespace tarvin {

namespace {

constexpr std::size_t longestPiece = 1000;

}

void LineRecorder::Received(std::span<const std::uint8_t> bytes) {
    if (!log.IsCommsLogOn() && !trace.IsWanted())
        return;
    FlushPending();
    std::string line = "RX ";
    AppendTraffic(line, bytes);
    log.LogLine(line, true);
    trace.Received(std::move(line));
}

void LineRecorder::SentText(std::string_view text) {
    if (log.IsCommsLogOn()) {
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
    if (!log.IsCommsLogOn())
        return;
    AppendTraffic(pendingTransmitText, byte);
    if (pendingTransmitText.size() >= longestPending)
        FlushPending();
}

void LineRecorder::FlushPending() {
    if (pendingTransmitText.empty())
        return;
    // The direction stands in the first piece alone and counts as part of the text.
    const std::string text = "TX " + std::exchange(pendingTransmitText, {});
    // The log drops a line that repeats the last one. Two equal pieces of one text are no repetition, so they are
    // forced.
    const bool hasPieces = text.size() > longestPiece;
    for (std::size_t start = 0; start < text.size(); start += longestPiece)
        log.LogLine(std::string_view(text).substr(start, longestPiece), hasPieces);
}

void LineRecorder::Dropped(std::size_t byteCount) {
    if (byteCount == 0 || (!log.IsCommsLogOn() && !trace.IsWanted()))
        return;
    FlushPending();
    const std::string line = ToUtf8(Filled(text::trace::notSent, {ToText(static_cast<std::int64_t>(byteCount))}));
    log.LogLine(line, true);
    trace.Note(line);
}

void LineRecorder::HoldsChanged(const LineHolds& previous, const LineHolds& present) {
    if ((!log.IsCommsLogOn() && !trace.IsWanted()) || previous == present)
        return;
    std::string line;
    const auto note = [&](const char* name, bool before, bool now) {
        if (before != now)
            line += std::string(name) + (now ? "=1  " : "=0  ");
    };
    note("CTS Hold", previous.cts, present.cts);
    note("DSR Hold", previous.dsr, present.dsr);
    note("RLS Hold", previous.rlsd, present.rlsd);
    note("XOff Hold", previous.xoff, present.xoff);
    note("XOff Sent", previous.xoffSent, present.xoffSent);
    log.LogLine(line, true);
    // The log has two blanks behind each hold. The trace has them between two holds only.
    trace.Note(std::string_view(line).substr(0, line.find_last_not_of(' ') + 1));
}

}
