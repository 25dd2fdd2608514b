#pragma once
// How long the answers of one exchange took. Knows nothing of what was asked. One thread at a time.

#include "base/Clock.h"

#include <cstddef>
#include <vector>

namespace tarvin::controller {

class TurnaroundRecord {
public:
    TurnaroundRecord() { times.reserve(1U << 18); }

    void Add(Clock::Duration time) { times.push_back(time); }
    void Clear() { times.clear(); }

    struct Summary {
        std::size_t count = 0;
        Clock::Duration median = {};
        // The shortest time that 99 of 100 answers kept.
        Clock::Duration percentile99 = {};
        Clock::Duration longest = {};
    };
    // All zero without answers.
    Summary Summarize() const;

private:
    std::vector<Clock::Duration> times;
};

}
