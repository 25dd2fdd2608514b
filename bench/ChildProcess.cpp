#include "ChildProcess.h"

#include "Deadline.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvin::bench {

namespace {

constexpr int cannotRun = 127;

[[noreturn]] void Become(char** arguments, const std::filesystem::path& home) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nowhere = ::open("/dev/null", O_RDWR);
    ::dup2(nowhere, STDIN_FILENO);
    ::dup2(nowhere, STDOUT_FILENO);
    if (!home.empty())
        ::setenv("TARVINDL_HOME", home.c_str(), 1);
    ::execvp(arguments[0], arguments);
    ::_exit(cannotRun);
}

// The number behind "key:" in one of the system's files about a process.
std::uint64_t NumberBehind(const std::filesystem::path& file, std::string_view key) {
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        if (!line.starts_with(key) || line[key.size()] != ':')
            continue;
        return std::strtoull(line.c_str() + key.size() + 1, nullptr, 10);
    }
    throw std::runtime_error(file.string() + " tells no " + std::string(key));
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

ChildProcess::ChildProcess(const std::vector<std::string>& command, const std::filesystem::path& home)
    : name(command.at(0)) {
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    pid = ::fork();
    if (pid < 0)
        throw std::system_error(errno, std::generic_category(), name);
    if (pid == 0)
        Become(arguments.data(), home);
}

ChildProcess::~ChildProcess() {
    if (pid < 0)
        return;
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
}

void ChildProcess::Wait() {
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        Deadline::ThrowIfPassed();
        if (errno != EINTR)
            throw std::system_error(errno, std::generic_category(), name);
    }
    pid = -1;
    if (status != 0)
        throw std::runtime_error(name + " ended with status " + std::to_string(status));
}

void ChildProcess::Stop() {
    ::kill(pid, SIGTERM);
    Wait();
}

std::filesystem::path ChildProcess::ProcFolder() const {
    return std::filesystem::path("/proc") / std::to_string(pid);
}

Nanoseconds ChildProcess::ProcessorTime() const {
    Nanoseconds sum = Nanoseconds::zero();
    for (const auto& task : std::filesystem::directory_iterator(ProcFolder() / "task"))
        sum += TimeOfTask(task.path());
    return sum;
}

Nanoseconds ChildProcess::MainThreadTime() const {
    return TimeOfTask(ProcFolder() / "task" / std::to_string(pid));
}

std::uint64_t ChildProcess::VoluntarySwitches() const {
    std::uint64_t sum = 0;
    for (const auto& task : std::filesystem::directory_iterator(ProcFolder() / "task"))
        sum += NumberBehind(task.path() / "status", "voluntary_ctxt_switches");
    return sum;
}

std::size_t ChildProcess::ResidentBytes() const {
    return Kibibytes(NumberBehind(ProcFolder() / "status", "VmRSS"));
}

std::size_t ChildProcess::PeakResidentBytes() const {
    return Kibibytes(NumberBehind(ProcFolder() / "status", "VmHWM"));
}

void ChildProcess::ResetPeak() const {
    std::ofstream stream(ProcFolder() / "clear_refs");
    if (!(stream << 5 << std::flush))
        throw std::runtime_error("the peak of the memory cannot be reset");
}

std::string OwnProgram(const std::string& programName) {
    return std::filesystem::read_symlink("/proc/self/exe").replace_filename(programName).string();
}

}
