#include "port/StoppedOutputPosix.h"

#include <poll.h>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto lookPeriod = 50ms;

}

void StoppedOutput::Start(Clock::Duration timeOnLine) {
    characterTime = timeOnLine;
    lastUnsentCount = 0;
    lastLook = {};
    wasStopped = false;
}

// A count of unsent bytes that stands still tells a stopped line from a slow one.
bool StoppedOutput::Look(int device, std::size_t unsentCount, bool hasMore) {
    if (unsentCount == 0) {
        lastUnsentCount = 0;
        return LookWhileEmpty(device, hasMore);
    }
    if (unsentCount < lastUnsentCount || lastUnsentCount == 0)
        lastProgress = clock.Now();
    lastUnsentCount = unsentCount;
    // A transmitter takes up to 64 characters of its own at once; the count stands still until they are sent.
    return clock.Now() - lastProgress > 100ms + characterTime * 64;
}

// A stopped pseudo-terminal always counts 0, but takes no more bytes, and poll tells. While nothing waits to be written
// only a lamp depends on the answer, and a poll at each look would cost more than the rest of the look.
bool StoppedOutput::LookWhileEmpty(int device, bool hasMore) {
    const auto now = clock.Now();
    if (!hasMore && !wasStopped && now - lastLook < lookPeriod)
        return false;
    lastLook = now;
    pollfd line = {device, POLLOUT, 0};
    wasStopped = ::poll(&line, 1, 0) == 0;
    return wasStopped;
}

}
