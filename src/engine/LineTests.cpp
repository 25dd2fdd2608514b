#include "engine/LineTests.h"

#include <algorithm>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto xoffPeriod = 3000ms;
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
                [this] { this->sender.SendText(TextOf(xon)); }) {}

void LineTests::StartLoopback() {
    // The user sees that the test has begun; its verdict is shown once the message has left.
    transfer.Wait(Urgency::AtOnce);
    transfer.ShowLoopback(false);
    recorder.EndTraceLine();
    sender.SendText(std::string(loopbackMessage) + TextOf(messageEnd));
}

void LineTests::OnReceived(ReceiveBuffer& received) {
    while (transfer.State() == TransferState::LoopbackFailure) {
        const auto message = received.TakeMessage(messageEnd, false);
        if (!message)
            return;
        // Noise may stand before it. The terminator is printable and stays in the message.
        const auto found = std::search(message->begin(), message->end(), loopbackMessage.begin(), loopbackMessage.end(),
                                       [](char a, char b) { return UpperCase(a) == UpperCase(b); });
        if (found != message->end())
            transfer.ShowLoopback(true);
    }
}

void LineTests::StartXoff() {
    sender.SendText(TextOf(xoff));
    endOfXoff.Start();
}

}
