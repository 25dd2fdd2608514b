#include "port/PacedOutput.h"

#include "harness/ManualClock.h"

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

std::vector<std::uint8_t> Bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

}

TEST_CASE("PacedOutput: it stays at most 16 characters ahead of a line that is half a percent slow") {
    for (const auto characterTime : {8333us, 1042us, 87us}) {
        CAPTURE(characterTime.count());
        ManualClock clock;
        PacedOutput pace(clock);
        pace.Start(characterTime);
        const auto slowTime = characterTime * 1005 / 1000;
        const auto started = clock.Now();
        std::size_t handedOver = 0;
        std::size_t longestQueue = 0;
        for (int look = 0; look < 2000; ++look) {
            const std::size_t room = pace.Room();
            pace.HandedOver(room);
            handedOver += room;
            const auto sent = static_cast<std::size_t>((clock.Now() - started) / slowTime);
            longestQueue = std::max(longestQueue, handedOver - std::min(handedOver, sent));
            clock.Advance(std::max<Clock::Duration>(pace.NextWrite() - clock.Now(), 1us));
        }
        CHECK(longestQueue <= PacedOutput::ahead);
        // No more than 1 % is lost to the slower clock.
        CHECK(handedOver >= static_cast<std::size_t>((clock.Now() - started) / characterTime * 99 / 100));
    }
}

TEST_CASE("PacedOutput: an idle line saves no room for later") {
    ManualClock clock;
    PacedOutput pace(clock);
    pace.Start(1ms);
    clock.Advance(1h);
    CHECK(pace.Room() == PacedOutput::ahead);
    pace.HandedOver(PacedOutput::ahead);
    CHECK(pace.Room() == 0);
    CHECK(pace.UnsentCount() == 16);
    clock.Advance(4500us);
    CHECK(pace.Room() == 4);
    clock.Advance(1h);
    CHECK(pace.UnsentCount() == 0);
}

TEST_CASE("PacedOutput: the last XOFF or XON of an arrival decides, and neither reaches the reader") {
    ManualClock clock;
    PacedOutput pace(clock);
    pace.Start(1ms);
    auto arrival = Bytes("a\x11\x13"
                         "b\x13");
    pace.TakeFlowBytes(arrival);
    CHECK(arrival == Bytes("ab"));
    CHECK(pace.IsHeld());
    CHECK(pace.Room() == 0);
    arrival = Bytes("\x13\x11");
    pace.TakeFlowBytes(arrival);
    CHECK(arrival.empty());
    CHECK_FALSE(pace.IsHeld());
    CHECK(pace.Room() == PacedOutput::ahead);
}
