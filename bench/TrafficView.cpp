// The traffic view under a steady stream of lines. The window is real and runs in a process of its own, bench-window,
// which writes its observations into a file.

#include "Desktop.h"
#include "Measures.h"
#include "RunningProgram.h"

#include <fstream>
#include <stdexcept>

namespace tarvin::bench {

using namespace std::chrono_literals;

namespace {

struct Observations {
    double seconds = 0;
    std::size_t lines = 0;
    std::size_t shown = 0;
    std::size_t notShown = 0;
    std::size_t paints = 0;
    double threadSeconds = 0;
    std::size_t peakBytes = 0;
    std::vector<Nanoseconds> answers;
};

Observations ReadObservations(const std::filesystem::path& file) {
    std::ifstream stream(file);
    Observations seen;
    stream >> seen.seconds >> seen.lines >> seen.shown >> seen.notShown >> seen.paints >> seen.threadSeconds >>
        seen.peakBytes;
    for (Nanoseconds::rep answer; stream >> answer;)
        seen.answers.emplace_back(answer);
    if (seen.answers.empty())
        throw std::runtime_error("bench-window has written no observations");
    // The view must count every line that it leaves out.
    if (seen.shown + seen.notShown != seen.lines)
        throw std::runtime_error("of " + std::to_string(seen.lines) + " lines the view has shown " +
                                 std::to_string(seen.shown) + " and counted " + std::to_string(seen.notShown));
    return seen;
}

void MeasureRate(const Effort& effort, std::size_t linesPerSecond, Table& table) {
    FrameLine line;
    const test::TemporaryInstallation installation = MakeInstallation(line);
    const auto file = installation.Path() / "observations";
    MeasuredProcess window("bench-window",
                           {std::to_string(effort.viewTime.count()), std::to_string(linesPerSecond), file.string()},
                           installation.Path());
    window.Wait(effort.viewTime + 30s);
    Observations seen = ReadObservations(file);
    const auto perSecond = [&](std::size_t count) { return static_cast<double>(count) / seen.seconds; };
    const std::string name = "view, " + std::to_string(linesPerSecond) + " lines/s: ";
    table.Check(name + "longest answer", Milliseconds(Longest(seen.answers)), Milliseconds(100ms));
    table.Inform(name + "answer, 99th percentile", Milliseconds(Quantile(seen.answers, 0.99)));
    table.Inform(name + "answer, median", Milliseconds(Median(seen.answers)));
    table.Check(name + "paints per second", {perSecond(seen.paints), "", 1}, {22, "", 1});
    table.Inform(name + "lines shown per second", {perSecond(seen.shown), "", 0});
    table.Inform(name + "lines counted as not shown", {perSecond(seen.notShown), "/s", 0});
    table.Inform(name + "window's thread", {100 * seen.threadSeconds / seen.seconds, "%", 1});
    table.Inform(name + "peak memory", Mebibytes(seen.peakBytes));
}

}

void MeasureTrafficView(const Effort& effort, Table& table) {
    RequireDisplay();
    // The second rate brings more lines between two paints than the traffic queue holds.
    for (const std::size_t linesPerSecond : {std::size_t{20000}, std::size_t{200000}})
        MeasureRate(effort, linesPerSecond, table);
}

}
