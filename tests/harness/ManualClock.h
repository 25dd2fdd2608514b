#pragma once
// A clock that stands still until a test moves it. One thread.

#include "base/Clock.h"

namespace tarvin::test {

class ManualClock : public Clock {
public:
    TimePoint Now() const override { return now; }
    void Advance(Duration duration) { now += duration; }

private:
    TimePoint now = TimePoint(std::chrono::hours(1));
};

}
