// tarvin-bench: measures the programs from outside, as a controller and an operator see them, and prints one table.
// bench/run builds and starts it.

#include "Measures.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <iterator>
#include <optional>
#include <string_view>
#include <vector>

namespace {

using namespace tarvin::bench;

struct Measure {
    const char* name;
    void (*run)(const Effort& effort, Table& table);
};

constexpr Measure measures[] = {
    {"turnaround", MeasureTurnaround},
    {"logged", MeasureLoggedTurnaround},
    {"idle", MeasureIdle},
    {"large-file", MeasureLargeFile},
    {"start", MeasureStart},
    {"dictionary", MeasureDictionary},
    {"window", MeasureWindow},
    {"traffic-view", MeasureTrafficView},
    {"desktop", MeasureDesktop},
};

// Shows that everything works. Too little for a valid figure.
constexpr Effort quickEffort = {2, 2000, std::chrono::seconds(1), 20, 3, 5, std::chrono::seconds(2)};

struct Options {
    Effort effort;
    bool isStrict = false;
    std::vector<std::string_view> names; // empty: all measures
};

// None if an argument is unknown.
std::optional<Options> Parse(int argumentCount, char** arguments) {
    Options options;
    for (int index = 1; index < argumentCount; ++index) {
        const std::string_view argument = arguments[index];
        const bool isMeasure = std::any_of(std::begin(measures), std::end(measures),
                                           [&](const Measure& measure) { return argument == measure.name; });
        if (argument == "--quick")
            options.effort = quickEffort;
        else if (argument == "--strict")
            options.isStrict = true;
        else if (isMeasure)
            options.names.push_back(argument);
        else
            return std::nullopt;
    }
    return options;
}

void PrintUsage() {
    std::fputs("Usage: bench/run [--quick] [--strict] [MEASURE...]\n"
               "\n"
               "  --quick   few lines and rounds: shows that everything works\n"
               "  --strict  exit with 1 if a target is missed\n"
               "\n"
               "Measures (all without one):",
               stderr);
    for (const Measure& measure : measures)
        std::fprintf(stderr, " %s", measure.name);
    std::fputc('\n', stderr);
}

}

int main(int argumentCount, char** arguments) {
    const auto options = Parse(argumentCount, arguments);
    if (!options) {
        PrintUsage();
        return 2;
    }
    Table table;
    for (const Measure& measure : measures) {
        const auto& names = options->names;
        if (!names.empty() && std::find(names.begin(), names.end(), measure.name) == names.end())
            continue;
        try {
            measure.run(options->effort, table);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s: %s\n", measure.name, error.what());
            return 2;
        }
    }
    table.Print();
    return options->isStrict && table.HasMissedTarget() ? 1 : 0;
}
