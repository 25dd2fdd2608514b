#pragma once
// The turnaround times of one exchange: how long each answer took. One thread at a time.

#include "base/Clock.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tarvin::controller {

class TurnaroundRecord {
public:
    // Reserves memory for a long transfer, so that no allocation falls into a turnaround.
    TurnaroundRecord() { times.reserve(1U << 18); }

    void Add(Clock::Duration time) { times.push_back(time); }
    void Clear() { times.clear(); }

    // All values are 0 without answers.
    struct Summary {
        std::size_t count = 0;
        Clock::Duration median = {};
        // 99 of 100 answers took at most this time.
        Clock::Duration percentile99 = {};
        Clock::Duration longest = {};
    };
    Summary Summarize() const {
        if (times.empty())
            return {};
        std::vector<Clock::Duration> sorted = times;
        std::sort(sorted.begin(), sorted.end());
        const std::size_t count = sorted.size();
        return {count, sorted[(count - 1) / 2], sorted[(count * 99 + 99) / 100 - 1], sorted.back()};
    }

private:
    std::vector<Clock::Duration> times;
};

}
