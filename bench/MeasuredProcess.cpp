#include "MeasuredProcess.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string_view>

namespace tarvin::bench {

namespace {

constexpr std::chrono::seconds longestEnd{10};

test::ChildProcess::Options OptionsFor(const std::vector<std::string>& arguments, const std::filesystem::path& home) {
    test::ChildProcess::Options options;
    options.arguments = arguments;
    if (!home.empty())
        options.environment["TARVINDL_HOME"] = home;
    // Reading the output would cost processor time on the core of the benchmark.
    options.output = test::ChildProcess::OutputUse::Discarded;
    return options;
}

// The number after "key:" in a file of /proc.
std::uint64_t NumberAfter(const std::filesystem::path& file, std::string_view key) {
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        if (!line.starts_with(key) || line[key.size()] != ':')
            continue;
        return std::strtoull(line.c_str() + key.size() + 1, nullptr, 10);
    }
    throw std::runtime_error(file.string() + " holds no " + std::string(key));
}

Nanoseconds TimeOfTask(const std::filesystem::path& task) {
    Nanoseconds::rep time = 0;
    if (!(std::ifstream(task / "schedstat") >> time))
        throw std::runtime_error(task.string() + "/schedstat cannot be read");
    return Nanoseconds(time);
}

std::size_t Kibibytes(std::uint64_t count) {
    return static_cast<std::size_t>(count) * 1024;
}

}

MeasuredProcess::MeasuredProcess(const std::string& program, const std::vector<std::string>& arguments,
                                 const std::filesystem::path& home)
    : name(program), process(program, OptionsFor(arguments, home)) {}

void MeasuredProcess::Wait(std::chrono::seconds longest) {
    if (const int status = process.WaitForExit(longest); status != 0)
        throw std::runtime_error(name + " ended with status " + std::to_string(status));
}

void MeasuredProcess::Stop() {
    process.Signal(SIGTERM);
    Wait(longestEnd);
}

std::filesystem::path MeasuredProcess::ProcFolder() const {
    return std::filesystem::path("/proc") / std::to_string(Id());
}

Nanoseconds MeasuredProcess::ProcessorTime() const {
    Nanoseconds sum = Nanoseconds::zero();
    for (const auto& task : std::filesystem::directory_iterator(ProcFolder() / "task"))
        sum += TimeOfTask(task.path());
    return sum;
}

Nanoseconds MeasuredProcess::MainThreadTime() const {
    return TimeOfTask(ProcFolder() / "task" / std::to_string(Id()));
}

std::uint64_t MeasuredProcess::VoluntarySwitches() const {
    std::uint64_t sum = 0;
    for (const auto& task : std::filesystem::directory_iterator(ProcFolder() / "task"))
        sum += NumberAfter(task.path() / "status", "voluntary_ctxt_switches");
    return sum;
}

std::size_t MeasuredProcess::ResidentBytes() const {
    return Kibibytes(NumberAfter(ProcFolder() / "status", "VmRSS"));
}

std::size_t MeasuredProcess::PeakResidentBytes() const {
    return Kibibytes(NumberAfter(ProcFolder() / "status", "VmHWM"));
}

void MeasuredProcess::ResetPeak() const {
    // The kernel takes 5 as the order to set VmHWM back to VmRSS.
    std::ofstream stream(ProcFolder() / "clear_refs");
    if (!(stream << 5 << std::flush))
        throw std::runtime_error("the peak of the memory cannot be reset");
}

}
