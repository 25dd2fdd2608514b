#include "Table.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace tarvin::bench {

namespace {

std::string RatioText(double ratio) {
    return Figure{ratio, "", 2}.Text();
}

std::string RatioText(double ratio, double mostAllowed) {
    return RatioText(ratio) + " (<= " + Figure{mostAllowed, "", 1}.Text() + ")";
}

}

const char* Table::Verdict(double ratio, double mostAllowed) {
    // A ratio that is no number meets nothing.
    if (ratio <= mostAllowed)
        return "ok";
    hasMissedTarget = true;
    return "MISSED";
}

void Table::Compare(std::string measure, Figure program, Figure limit) {
    rows.push_back({{std::move(measure), program.Text(), limit.Text(), RatioText(program.value / limit.value), "-"}});
}

void Table::Compare(std::string measure, Figure program, Figure limit, double mostAllowed) {
    const double ratio = program.value / limit.value;
    rows.push_back({{std::move(measure), program.Text(), limit.Text(), RatioText(ratio, mostAllowed),
                     Verdict(ratio, mostAllowed)}});
}

void Table::Check(std::string measure, Figure program, Figure target) {
    const double ratio = program.value / target.value;
    rows.push_back(
        {{std::move(measure), program.Text(), "<= " + target.Text(), RatioText(ratio, 1), Verdict(ratio, 1)}});
}

void Table::Inform(std::string measure, Figure program) {
    rows.push_back({{std::move(measure), program.Text(), "-", "-", "-"}});
}

void Table::Print() const {
    std::vector<Row> all = {{{"measure", "program", "limit or target", "ratio", "verdict"}}};
    all.insert(all.end(), rows.begin(), rows.end());
    std::size_t widths[columnCount] = {};
    for (const Row& row : all) {
        for (std::size_t column = 0; column < columnCount; ++column)
            widths[column] = std::max(widths[column], row.cells[column].size());
    }
    for (const Row& row : all) {
        for (std::size_t column = 0; column < columnCount; ++column) {
            const int width = static_cast<int>(widths[column]);
            std::printf("%s%*s", column == 0 ? "" : " | ", column == 0 ? -width : width, row.cells[column].c_str());
        }
        std::putchar('\n');
    }
}

}
