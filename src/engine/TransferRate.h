#pragma once
// How fast a transfer has been during the last 30 seconds. One thread.

#include "base/Clock.h"

#include <cstdint>
#include <deque>
#include <optional>

namespace tarvin {

class TransferRate {
public:
    // A new transfer.
    void Reset() { samples.clear(); }
    // The counters at `now`, as often as the caller likes.
    void Add(Clock::TimePoint now, std::int64_t lineCount, std::int64_t byteCount);

    // None before a second has passed.
    std::optional<double> LinesPerSecond() const;
    std::optional<double> BytesPerSecond() const;

private:
    struct Sample {
        Clock::TimePoint time;
        std::int64_t lineCount;
        std::int64_t byteCount;
    };

    std::optional<double> PerSecond(std::int64_t Sample::*counter) const;

    // The last one is the present, and is replaced until a second has passed since the one before it.
    std::deque<Sample> samples;
};

}
