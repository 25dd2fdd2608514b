#pragma once
// The table of all results. Knows what a target is, and nothing of how a figure was obtained.

#include "Figure.h"

#include <string>
#include <vector>

namespace tarvin::bench {

class Table {
public:
    // A figure of the program beside the same figure of what it is compared with. Without `mostAllowed`, the largest
    // ratio that meets the target, the row is for information.
    void Compare(std::string measure, Figure program, Figure limit);
    void Compare(std::string measure, Figure program, Figure limit, double mostAllowed);

    // A figure of the program and the largest one that meets the target.
    void Check(std::string measure, Figure program, Figure target);

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
