#include "Measures.h"
#include "NcText.h"
#include "Placement.h"
#include "RunningProgram.h"
#include "Station.h"

#include <algorithm>
#include <stdexcept>

namespace tarvin::bench {

namespace {

// The two programs take turns after this many lines, so that both meet the same disturbances.
constexpr std::size_t linesPerTurn = 100;
const std::string number = "100";

void RunRound(Station& program, Station& limit, std::size_t lineCount) {
    program.Begin(number);
    limit.Begin(number);
    for (std::size_t first = 1; first < lineCount; first += linesPerTurn) {
        const std::size_t last = std::min(first + linesPerTurn, lineCount);
        program.Fetch(first, last);
        limit.Fetch(first, last);
    }
    program.End();
    limit.End();
}

// How many times longer than the limit's answers the program's answers may take.
struct Allowance {
    const char* name;
    double median;
    double slowest;
};

void AddRows(const Allowance& allowed, bool isOneCore, Station& program, Station& limit, Table& table) {
    const std::string name = std::string(allowed.name) + (isOneCore ? " on one core: " : " on two cores: ");
    auto& own = program.samples;
    auto& least = limit.samples;
    const auto compare = [&](double share, const char* what, auto... mostAllowed) {
        table.Compare(name + what, Microseconds(Quantile(own, share)), Microseconds(Quantile(least, share)),
                      mostAllowed...);
    };
    if (isOneCore) {
        // The system's worker that carries the bytes may run on the other core, and does so more often for one side
        // than for the other. The median then depends on luck. The fastest tenth does not.
        compare(0.1, "10th percentile", allowed.median);
        compare(0.5, "median");
    } else {
        compare(0.5, "median", allowed.median);
    }
    compare(0.99, "99th percentile", allowed.slowest);
    compare(1, "longest");
    table.Compare(name + "lines per second", {program.LinesPerSecond(), "", 0}, {limit.LinesPerSecond(), "", 0});
}

void MeasureOnCores(const Effort& effort, int ownCore, int programCore, Table& table) {
    // The first line comes with the answer to the request.
    const std::size_t lineCount = effort.linesPerRound + 1;
    Placement placement;
    placement.Use(programCore);
    RunningProgram service(serviceProgram);
    const auto file = service.NcFile(number);
    WriteNcLines(file, lineCount);
    const auto frames = ReadDataFrames(file, lineCount);
    FrameLine limitLine;
    const MeasuredProcess responder("bench-responder", {limitLine.DevicePath(), file.string()});

    placement.Use(ownCore);
    const std::size_t sampleCount = effort.rounds * effort.linesPerRound;
    Station program(service.line, frames, sampleCount);
    Station limit(limitLine, frames, sampleCount);
    for (std::size_t round = 0; round < effort.rounds; ++round)
        RunRound(program, limit, lineCount);
    service.process.Stop();
    AddRows({"turnaround", 1.5, 2.0}, ownCore == programCore, program, limit, table);
}

void MeasureLoggedOnCores(const Effort& effort, int ownCore, int programCore, Table& table) {
    const std::size_t lineCount = effort.linesPerRound + 1;
    Placement placement;
    placement.Use(programCore);
    RunningProgram logged(serviceProgram, "comms log=%s.log\ncomms log size=1000\n");
    RunningProgram plain(serviceProgram);
    for (const RunningProgram* service : {&logged, &plain})
        WriteNcLines(service->NcFile(number), lineCount);
    const auto frames = ReadDataFrames(plain.NcFile(number), lineCount);

    placement.Use(ownCore);
    const std::size_t sampleCount = effort.rounds * effort.linesPerRound;
    Station program(logged.line, frames, sampleCount);
    Station limit(plain.line, frames, sampleCount);
    for (std::size_t round = 0; round < effort.rounds; ++round)
        RunRound(program, limit, lineCount);
    logged.process.Stop();
    plain.process.Stop();
    // The log holds two entries for each line: the line and its acknowledgement.
    const auto logSize = std::filesystem::file_size(logged.installation / (std::string(machineName) + ".log"));
    if (logSize < sampleCount * 100)
        throw std::runtime_error("the comms log lacks lines that were sent");
    AddRows({"logged turnaround", 1.2, 2.0}, ownCore == programCore, program, limit, table);
}

}

void MeasureLoggedTurnaround(const Effort& effort, Table& table) {
    const std::vector<int> cores = Placement().Cores();
    if (cores.size() > 1)
        MeasureLoggedOnCores(effort, cores.front(), cores.back(), table);
    MeasureLoggedOnCores(effort, cores.front(), cores.front(), table);
}

void MeasureTurnaround(const Effort& effort, Table& table) {
    const std::vector<int> cores = Placement().Cores();
    // As at a machine: the controller is a computer of its own. The system uses most of the time.
    if (cores.size() > 1)
        MeasureOnCores(effort, cores.front(), cores.back(), table);
    // The system need not wake another core, so the program's own work shows.
    MeasureOnCores(effort, cores.front(), cores.front(), table);
}

}
