#include "Measures.h"
#include "RunningProgram.h"

namespace tarvin::bench {

using namespace std::chrono_literals;

std::vector<Nanoseconds> MeasureStarts(const std::string& programName, std::size_t starts, const AfterLink& afterLink) {
    FrameLine line;
    const test::TemporaryInstallation installation = MakeInstallation(line);
    std::vector<Nanoseconds> samples;
    for (std::size_t start = 0; start < starts; ++start) {
        const Deadline deadline(10s);
        const auto started = SteadyTime::now();
        MeasuredProcess process(programName, {}, installation.Path());
        AwaitLink(line);
        samples.push_back(SteadyTime::now() - started);
        if (afterLink)
            afterLink(process, started);
        process.Stop();
        line.DropInput();
    }
    return samples;
}

void MeasureStart(const Effort& effort, Table& table) {
    std::vector<Nanoseconds> samples = MeasureStarts(serviceProgram, effort.starts);
    table.Check("start to link test: median", Milliseconds(Median(samples)), Milliseconds(50ms));
    table.Inform("start to link test: longest", Milliseconds(Longest(samples)));
}

}
