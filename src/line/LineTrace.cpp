#include "line/LineTrace.h"

#include "logging/LogText.h"

#include <utility>

namespace tarvin {

namespace {

constexpr std::size_t longestOpenLine = 256;

}

void LineTrace::Push(TrafficLine line) {
    line.time = clock.Now();
    wakesReader = queue.Push(std::move(line)) || wakesReader;
}

void LineTrace::ShowOpenLine() {
    if (openLine.size() == shownLength)
        return;
    Push({TrafficLine::Kind::Transmitted, openLine.substr(shownLength), shownLength > 0});
    shownLength = openLine.size();
}

void LineTrace::EndLine() {
    ShowOpenLine();
    openLine.clear();
    shownLength = 0;
    continues = false;
}

void LineTrace::Note(std::string_view text) {
    if (!queue.IsWanted())
        return;
    EndLine();
    Push({TrafficLine::Kind::Note, std::string(text)});
}

void LineTrace::Received(std::string line) {
    if (!queue.IsWanted())
        return;
    EndLine();
    Push({TrafficLine::Kind::Received, std::move(line)});
}

void LineTrace::Sent(std::uint8_t byte, bool continuation) {
    if (!queue.IsWanted()) {
        openLine.clear();
        shownLength = 0;
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

void LineTrace::Block(int askedCount, std::span<const std::uint8_t> bytes) {
    if (!queue.IsWanted())
        return;
    EndLine();
    std::string line = "TX" + std::to_string(askedCount) + " ";
    AppendTraffic(line, bytes);
    Push({TrafficLine::Kind::Transmitted, std::move(line)});
}

}
