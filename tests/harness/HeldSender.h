#pragma once
// A sender whose line a test holds, and lets go. It keeps whole frames back, and all that has left.

#include "base/Clock.h"
#include "line/Sender.h"

#include <string>
#include <utility>
#include <vector>

namespace tarvin::test {

class HeldSender : public Sender {
public:
    explicit HeldSender(const Clock& clock) : clock(clock) {}

    void SendText(std::string_view text) override { Put(std::string(text)); }
    void SendChar(std::uint8_t byte, bool) override { Put(std::string(1, static_cast<char>(byte))); }
    void SendBlock(int, std::span<const std::uint8_t> bytes, Clock::Duration) override {
        Put(std::string(bytes.begin(), bytes.end()));
    }
    bool IsEmpty() const override { return waiting.empty(); }
    bool IsHeld() const { return isHeld; }
    bool IsHeldUp() const override { return isHeld && !waiting.empty(); }
    void DropUnsent() override { waiting.clear(); }
    void EndOldHold() override {
        if (isHeld && clock.Now() - heldSince >= std::chrono::seconds(10))
            Release();
    }
    void Note(std::string_view) override {}

    void Hold() {
        heldSince = isHeld ? heldSince : clock.Now();
        isHeld = true;
    }
    void Release() {
        isHeld = false;
        for (const std::string& frame : std::exchange(waiting, {}))
            sent += frame;
    }

    std::string sent;

private:
    void Put(std::string frame) {
        if (isHeld)
            waiting.push_back(std::move(frame));
        else
            sent += frame;
    }

    const Clock& clock;
    bool isHeld = false;
    Clock::TimePoint heldSince;
    std::vector<std::string> waiting;
};

}
