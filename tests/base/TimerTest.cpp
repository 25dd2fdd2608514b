#include "base/Timer.h"

#include "harness/ManualClock.h"

#include <memory>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace std::chrono_literals;
using tarvin::test::ManualClock;

TEST_CASE("Timer: a late repeating timer fires once, and a one-shot timer once for each start") {
    ManualClock clock;
    TimerQueue queue;
    int repeated = 0;
    int once = 0;
    Timer repeating(queue, clock, "repeating", 100ms, Timer::Kind::Repeating, [&] { ++repeated; });
    Timer oneShot(queue, clock, "one-shot", 250ms, Timer::Kind::OneShot, [&] { ++once; });
    repeating.Start();
    oneShot.Start();
    CHECK(queue.NextDue() == clock.Now() + 100ms);
    clock.Advance(1s);
    queue.RunDue(clock.Now());
    queue.RunDue(clock.Now());
    CHECK(repeated == 1);
    CHECK(once == 1);
    CHECK_FALSE(oneShot.IsRunning());
    CHECK(queue.NextDue() == clock.Now() + 100ms);
}

TEST_CASE("TimerQueue: a callback destroys a due timer and its own") {
    ManualClock clock;
    TimerQueue queue;
    int fired = 0;
    std::unique_ptr<Timer> other;
    std::unique_ptr<Timer> own = std::make_unique<Timer>(queue, clock, "own", 10ms, Timer::Kind::OneShot, [&] {
        ++fired;
        other.reset();
        own.reset();
    });
    other = std::make_unique<Timer>(queue, clock, "other", 10ms, Timer::Kind::OneShot, [&] { ++fired; });
    own->Start();
    other->Start();
    clock.Advance(10ms);
    queue.RunDue(clock.Now());
    CHECK(fired == 1);
    CHECK_FALSE(queue.NextDue());
}
