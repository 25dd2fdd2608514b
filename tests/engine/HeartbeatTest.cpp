#include "harness/EngineHarness.h"
#include "protocol/RawProtocol.h"

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

TEST_CASE("Monitor: the heartbeat begins with the first pass, and stops with the passes") {
    EngineHarness<RawProtocol> harness;
    int beats = 0;
    harness.engine->Post([&beats](Monitor& engine) { engine.StartHeartbeat(30s, [&beats] { ++beats; }); });
    harness.Open();
    CHECK(beats == 0);
    harness.Settle();
    CHECK(beats == 1);
    harness.Run(91s);
    CHECK(beats == 4);
    // A thread that hangs for ten periods has missed them.
    harness.clock.Advance(300s);
    CHECK(beats == 4);
    harness.Settle();
    CHECK(beats == 5);
}
