#pragma once
// A number with its unit, as the table shows it, and how one number is made of many.

#include <chrono>
#include <string>
#include <vector>

namespace tarvin::bench {

using Nanoseconds = std::chrono::nanoseconds;
using SteadyTime = std::chrono::steady_clock;

struct Figure {
    double value = 0;
    const char* unit = "";
    int decimals = 0;

    std::string Text() const;
};

Figure Microseconds(Nanoseconds time);
Figure Milliseconds(Nanoseconds time);
Figure Mebibytes(std::size_t byteCount);

// The smallest sample that at least `share` (0 to 1) of all do not exceed. Sorts the samples; there must be one.
Nanoseconds Quantile(std::vector<Nanoseconds>& samples, double share);
inline Nanoseconds Median(std::vector<Nanoseconds>& samples) {
    return Quantile(samples, 0.5);
}
inline Nanoseconds Longest(std::vector<Nanoseconds>& samples) {
    return Quantile(samples, 1);
}

}
