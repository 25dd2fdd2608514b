#include "engine/LineTrace.h"

#include "logging/TrafficText.h"

#include <utility>

namespace tarvin {

namespace {

constexpr std::size_t longestOpenLine = 256;

}

void LineTrace::Push(TrafficLine::Kind kind, std::string text) {
    if (queue.Push({kind, std::move(text)}))
        wakeReader();
}

void LineTrace::EndLine() {
    if (!openLine.empty())
        Push(TrafficLine::Kind::Transmitted, std::exchange(openLine, {}));
    continues = false;
}

void LineTrace::Note(std::string_view text) {
    if (!queue.IsWanted())
        return;
    EndLine();
    Push(TrafficLine::Kind::Note, std::string(text));
}

void LineTrace::Received(std::string line) {
    if (!queue.IsWanted())
        return;
    EndLine();
    Push(TrafficLine::Kind::Received, std::move(line));
}

void LineTrace::Sent(std::uint8_t byte, bool continuation) {
    if (!queue.IsWanted()) {
        openLine.clear();
        return;
    }
    if (!continues || !continuation || openLine.empty()) {
        EndLine();
        openLine = "TX ";
        continues = true;
    }
    AppendTraffic(openLine, byte);
    if (byte == '\n' || openLine.size() >= longestOpenLine)
        EndLine();
}

void LineTrace::Block(int byteCount, std::span<const std::uint8_t> bytes) {
    if (!queue.IsWanted())
        return;
    EndLine();
    std::string line = "TX" + std::to_string(byteCount) + " ";
    AppendTraffic(line, bytes);
    Push(TrafficLine::Kind::Transmitted, std::move(line));
}

}
