#include "Measures.h"
#include "RunningProgram.h"

#include <thread>

namespace tarvin::bench {

using namespace std::chrono_literals;

IdleFigures MeasureIdleProgram(const RunningProgram& program, std::chrono::seconds idleTime) {
    const auto started = SteadyTime::now();
    const Nanoseconds timeBefore = program.process.ProcessorTime();
    const std::uint64_t switchesBefore = program.process.VoluntarySwitches();
    std::this_thread::sleep_for(idleTime);
    const Nanoseconds used = program.process.ProcessorTime() - timeBefore;
    const std::uint64_t switches = program.process.VoluntarySwitches() - switchesBefore;
    const std::chrono::duration<double> elapsed = SteadyTime::now() - started;
    return {{100 * std::chrono::duration<double>(used) / elapsed, "%", 3},
            Mebibytes(program.process.ResidentBytes()),
            {static_cast<double>(switches) / elapsed.count(), "", 1}};
}

void MeasureIdle(const Effort& effort, Table& table) {
    RunningProgram service(serviceProgram);
    std::this_thread::sleep_for(500ms);
    const IdleFigures idle = MeasureIdleProgram(service, effort.idleTime);
    table.Check("idle: share of a core", idle.share, {0.1, "%", 3});
    table.Check("idle: memory", idle.memory, Mebibytes(8 * 1024 * 1024));
    table.Inform("idle: wake-ups per second", idle.wakeUpsPerSecond);
    service.process.Stop();
}

}
