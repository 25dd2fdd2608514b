#include "Table.h"

#include <algorithm>
#include <cassert>
#include <cmath>
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

std::string Figure::Text() const {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f%s%s", decimals, value, *unit == '\0' ? "" : " ", unit);
    return text;
}

Figure Microseconds(Nanoseconds time) {
    return {static_cast<double>(time.count()) / 1e3, "us", 1};
}

Figure Milliseconds(Nanoseconds time) {
    return {static_cast<double>(time.count()) / 1e6, "ms", 1};
}

Figure Mebibytes(std::size_t byteCount) {
    return {static_cast<double>(byteCount) / (1024 * 1024), "MiB", 1};
}

Nanoseconds Quantile(std::vector<Nanoseconds>& samples, double share) {
    assert(!samples.empty());
    std::sort(samples.begin(), samples.end());
    const auto rank = static_cast<std::size_t>(std::ceil(share * static_cast<double>(samples.size())));
    return samples.at(std::clamp<std::size_t>(rank, 1, samples.size()) - 1);
}

const char* Table::Verdict(double ratio, double mostAllowed) {
    // Compared this way round, a ratio that is not a number counts as missed.
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
