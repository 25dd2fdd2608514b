#pragma once
// Counts the names that one machine has added to its folder within the last hour. A controller in disorder asks for one
// new number after the other, and would fill the disk with names until no program can be stored. One thread at a time.

#include "base/Clock.h"

#include <array>
#include <cstdint>

namespace tarvin {

class NewNameCount {
public:
    explicit NewNameCount(const Clock& clock) : clock(clock) {}

    void Add();
    // Names of the last hour, to the minute.
    std::int64_t Total();

private:
    void Advance();

    const Clock& clock;
    std::array<std::int64_t, 60> minutes = {}; // of the last hour, as a ring
    std::int64_t newestMinute = 0;             // of the clock
};

}
