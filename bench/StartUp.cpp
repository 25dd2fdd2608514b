#include "Measures.h"
#include "RunningProgram.h"

namespace tarvin::bench {

using namespace std::chrono_literals;

void MeasureStart(const Effort& effort, Table& table) {
    FrameLine line;
    const test::TemporaryInstallation installation = MakeInstallation(line);
    std::vector<Nanoseconds> samples;
    for (std::size_t start = 0; start < effort.starts; ++start) {
        const Deadline deadline(10s);
        const auto started = SteadyTime::now();
        MeasuredProcess process(serviceProgram, {}, installation.Path());
        AwaitLink(line);
        samples.push_back(SteadyTime::now() - started);
        process.Stop();
        line.DropInput();
    }
    table.Check("start to link test: median", Milliseconds(Median(samples)), Milliseconds(50ms));
    table.Inform("start to link test: longest", Milliseconds(Longest(samples)));
}

}
