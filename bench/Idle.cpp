#include "Installation.h"
#include "Measures.h"

#include <thread>

namespace tarvin::bench {

using namespace std::chrono_literals;

void MeasureIdle(const Effort& effort, Table& table) {
    RunningService service;
    std::this_thread::sleep_for(500ms);

    const auto started = SteadyTime::now();
    const Nanoseconds timeBefore = service.process.ProcessorTime();
    const std::uint64_t switchesBefore = service.process.VoluntarySwitches();
    std::this_thread::sleep_for(effort.idleTime);
    const Nanoseconds used = service.process.ProcessorTime() - timeBefore;
    const std::uint64_t switches = service.process.VoluntarySwitches() - switchesBefore;
    const std::chrono::duration<double> elapsed = SteadyTime::now() - started;

    table.Check("idle: share of a core", {100 * std::chrono::duration<double>(used) / elapsed, "%", 3}, {0.1, "%", 3});
    table.Check("idle: memory", Mebibytes(service.process.ResidentBytes()), Mebibytes(8 * 1024 * 1024));
    table.Inform("idle: wake-ups per second", {static_cast<double>(switches) / elapsed.count(), "", 1});

    const Deadline deadline(10s);
    service.process.Stop();
}

}
