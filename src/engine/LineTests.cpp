#include "engine/LineTests.h"

#include <algorithm>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto xoffPeriod = 3000ms;
constexpr auto timeToReturn = 1000ms; // beside the line time
constexpr int bitsPerCharacter = 10;
constexpr std::uint8_t messageEnd = 0x40;
constexpr std::string_view loopbackMessage = "LocalTestMessage";

std::string TextOf(std::uint8_t byte) {
    return std::string(1, static_cast<char>(byte));
}

char16_t UpperCase(char byte) {
    return ToUpperAscii(static_cast<unsigned char>(byte));
}

}

LineTests::LineTests(Transfer& transfer, Sender& sender, LineRecorder& recorder, TimerQueue& timers, const Clock& clock)
    : transfer(transfer),
      sender(sender),
      recorder(recorder),
      endOfXoff(timers, clock, "DownloadApp::TestXon", xoffPeriod, Timer::Kind::OneShot,
                [this] { this->sender.SendText(TextOf(xon)); }),
      endOfLoopback(timers, clock, "DownloadApp::EndOfLoopback", timeToReturn, Timer::Kind::OneShot,
                    [this] { EndLoopback(); }) {}

void LineTests::StartLoopback(int bitsPerSecond) {
    transfer.BeginLoopback();
    recorder.EndTraceLine();
    const std::string message = std::string(loopbackMessage) + TextOf(messageEnd);
    sender.SendText(message);
    const auto bitCount = static_cast<std::int64_t>(message.size()) * bitsPerCharacter;
    endOfLoopback.SetPeriod(timeToReturn + std::chrono::nanoseconds(1s) * bitCount / bitsPerSecond);
    endOfLoopback.Start();
}

void LineTests::EndLoopback() {
    // On a held line the message has not left. It must not come later, between the answers.
    if (transfer.IsTesting())
        sender.DropUnsent();
    transfer.EndLoopback(false);
}

void LineTests::OnReceived(ReceiveBuffer& received) {
    while (transfer.IsTesting()) {
        const auto message = received.TakeMessage(messageEnd, false);
        if (!message)
            return;
        // Noise may stand before it. The terminator is printable and stays in the message.
        const auto found =
            std::search(message->text.begin(), message->text.end(), loopbackMessage.begin(), loopbackMessage.end(),
                        [](char a, char b) { return UpperCase(a) == UpperCase(b); });
        if (found != message->text.end())
            transfer.EndLoopback(true);
    }
}

void LineTests::StartXoff() {
    sender.SendText(TextOf(xoff));
    endOfXoff.Start();
}

}
