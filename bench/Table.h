#pragma once
// The results of a run: figures with their units, and the table that shows each beside its limit or target.

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace tarvin::bench {

using Nanoseconds = std::chrono::nanoseconds;
using SteadyTime = std::chrono::steady_clock;

// A number as the table shows it.
struct Figure {
    double value = 0;
    const char* unit = "";
    int decimals = 0;

    std::string Text() const;
};

Figure Microseconds(Nanoseconds time);
Figure Milliseconds(Nanoseconds time);
Figure Mebibytes(std::size_t byteCount);

// The smallest sample that is not exceeded by at least `share` (0 to 1) of all samples. Sorts the samples. Requires at
// least one.
Nanoseconds Quantile(std::vector<Nanoseconds>& samples, double share);
inline Nanoseconds Median(std::vector<Nanoseconds>& samples) {
    return Quantile(samples, 0.5);
}
inline Nanoseconds Longest(std::vector<Nanoseconds>& samples) {
    return Quantile(samples, 1);
}

class Table {
public:
    // Adds the program's figure beside the same figure of a reference that was measured in the same run. The target is
    // met if the ratio of both is at most `mostAllowed`. Without `mostAllowed` there is no target.
    void Compare(std::string measure, Figure program, Figure limit);
    void Compare(std::string measure, Figure program, Figure limit, double mostAllowed);

    // Adds the program's figure beside the largest figure that meets the target.
    void Check(std::string measure, Figure program, Figure target);

    // Adds the program's figure without anything to compare it with.
    void Inform(std::string measure, Figure program);

    void Print() const;
    bool HasMissedTarget() const { return hasMissedTarget; }

private:
    static constexpr std::size_t columnCount = 5;
    struct Row {
        std::string cells[columnCount];
    };

    const char* Verdict(double ratio, double mostAllowed);

    std::vector<Row> rows;
    bool hasMissedTarget = false;
};

}
