#pragma once
// A program that the benchmark runs, and what the system tells about it. Ends with the benchmark, however that ends.

#include "Figure.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tarvin::bench {

class ChildProcess {
public:
    // Starts it, its standard output discarded. `command` is the program and its arguments; `home` becomes its
    // TARVINDL_HOME unless it is empty. Throws if it cannot be started.
    explicit ChildProcess(const std::vector<std::string>& command, const std::filesystem::path& home = {});
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Waits for its end. Throws if that is not an exit with 0.
    void Wait();
    // Asks it to end, and waits.
    void Stop();

    pid_t Id() const { return pid; }
    // Of all its threads, and of the one that it began with, since it began.
    Nanoseconds ProcessorTime() const;
    Nanoseconds MainThreadTime() const;
    std::uint64_t VoluntarySwitches() const;
    // Memory in the main store, now and at most since the last ResetPeak.
    std::size_t ResidentBytes() const;
    std::size_t PeakResidentBytes() const;
    void ResetPeak() const;

private:
    std::filesystem::path ProcFolder() const;

    std::string name;
    pid_t pid = -1;
};

// A program that was built together with this one.
std::string OwnProgram(const std::string& programName);

}
