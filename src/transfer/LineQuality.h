#pragma once
// What was not clean on the line during one transfer. Any thread.

#include "base/KelText.h"

#include <cstdint>

namespace tarvin {

struct LineQuality {
    std::int64_t damaged = 0;      // messages of the controller that arrived damaged
    std::int64_t repeats = 0;      // messages that the controller repeated, or asked the program to repeat
    std::int64_t driverErrors = 0; // parity, framing and overrun errors

    bool IsClean() const { return *this == LineQuality(); }
    bool operator==(const LineQuality&) const = default;
};

// For users, such as "Line quality: 2 damaged, 1 repeated, 3 driver errors".
KelText DescribeQuality(const LineQuality& quality);

}
