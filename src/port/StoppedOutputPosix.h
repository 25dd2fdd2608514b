#pragma once
// Finds out that a driver has stopped its output at an XOFF. The kernel does not tell. One thread uses it.

#include "base/Clock.h"

#include <cstddef>

namespace tarvin {

class StoppedOutput {
public:
    explicit StoppedOutput(const Clock& clock) : clock(clock) {}

    // Starts anew: nothing is stopped.
    void Start(Clock::Duration characterTime);
    // Whether the output of the open device is stopped. `unsentCount` is the kernel's count of bytes that wait for the
    // line; `hasMore`: the port holds bytes that the kernel has not taken yet.
    bool Look(int device, std::size_t unsentCount, bool hasMore);

private:
    bool LookWhileEmpty(int device, bool hasMore);

    const Clock& clock;
    Clock::Duration characterTime = std::chrono::milliseconds(1);
    std::size_t lastUnsentCount = 0;
    Clock::TimePoint lastProgress;
    Clock::TimePoint lastLook;
    bool wasStopped = false;
};

}
