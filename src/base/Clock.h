#pragma once
// Time that never jumps. Everything that waits or measures takes a Clock, so that tests can move it.

#include <chrono>

namespace tarvin {

class Clock {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::steady_clock::duration;

    virtual ~Clock() = default;
    // Any thread.
    virtual TimePoint Now() const = 0;
};

// The system's clock.
class SteadyClock : public Clock {
public:
    TimePoint Now() const override { return std::chrono::steady_clock::now(); }
};

}
