#pragma once
// A program that the benchmark runs, and the system's figures about it. Its standard output is discarded. Failures
// throw.

#include "Table.h"
#include "harness/ChildProcessPosix.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tarvin::bench {

class MeasuredProcess {
public:
    // Starts `program`, see ChildProcess. Its TARVINDL_HOME becomes `home`, unless that is empty.
    explicit MeasuredProcess(const std::string& program, const std::vector<std::string>& arguments = {},
                             const std::filesystem::path& home = {});

    // Waits for the end of the program. Throws if it does not exit with 0 within `longest`.
    void Wait(std::chrono::seconds longest);
    // Asks the program to end and waits up to 10 s.
    void Stop();

    pid_t Id() const { return process.Id(); }
    // Processor time since the start, of all threads that still run and of the first thread.
    Nanoseconds ProcessorTime() const;
    Nanoseconds MainThreadTime() const;
    // Voluntary context switches of all threads that still run: each is one wake-up.
    std::uint64_t VoluntarySwitches() const;
    // Memory in RAM, now and at most since the start or the last ResetPeak.
    std::size_t ResidentBytes() const;
    std::size_t PeakResidentBytes() const;
    void ResetPeak() const;

private:
    std::filesystem::path ProcFolder() const;

    const std::string name;
    test::ChildProcess process;
};

}
