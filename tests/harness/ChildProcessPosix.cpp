#include "harness/ChildProcessPosix.h"

#include "harness/SystemCallPosix.h"
#include "harness/WindowsProgramsPosix.h"

#include <cassert>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvin::test {

namespace {

// The exit code by which shells say that a program cannot be run.
constexpr int cannotRun = 127;

struct Pipe {
    int readEnd = -1;
    int writeEnd = -1;

    void Open() {
        int ends[2];
        RequireCall(::pipe2(ends, O_CLOEXEC) == 0, "pipe");
        readEnd = ends[0];
        writeEnd = ends[1];
    }
};

// Runs in the child.
[[noreturn]] void Become(char** words, const ChildProcess::Options& options, const Pipe& input, const Pipe& output) {
    // A benchmark or test that is killed leaves no program behind that holds a line or a display.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nullDevice = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    ::dup2(options.hasInput ? input.readEnd : nullDevice, STDIN_FILENO);
    if (options.output == ChildProcess::OutputUse::Captured) {
        ::dup2(output.writeEnd, STDOUT_FILENO);
        ::dup2(output.writeEnd, STDERR_FILENO);
    } else {
        ::dup2(nullDevice, STDOUT_FILENO);
    }
    // A program of a test publishes its status in its own installation, and not among those of the computer.
    if (const auto home = options.environment.find("TARVINDL_HOME"); home != options.environment.end())
        ::setenv("TARVINDL_RUNTIME", home->second.c_str(), 1);
    for (const auto& [name, value] : options.environment)
        ::setenv(name.c_str(), value.c_str(), 1);
    if (options.beforeStart)
        options.beforeStart();
    ::execv(words[0], words);
    ::_exit(cannotRun);
}

}

ChildProcess::ChildProcess(const std::string& program, const Options& options)
    : name(program), isWindowsProgram(AreWindowsProgramsMeant() && program != "tarvin-controller") {
    // An absolute path stays as it is when it is appended to a folder.
    std::vector<std::string> words =
        isWindowsProgram ? WindowsProgramWords(program)
                         : std::vector{(std::filesystem::path(TARVIN_PROGRAM_FOLDER) / program).string()};
    words.insert(words.end(), options.arguments.begin(), options.arguments.end());
    // Prepared before the fork: the child of a process with several threads must not allocate memory.
    std::vector<char*> wordPointers;
    for (std::string& word : words)
        wordPointers.push_back(word.data());
    wordPointers.push_back(nullptr);

    Pipe inputPipe;
    Pipe outputPipe;
    if (options.hasInput)
        inputPipe.Open();
    if (options.output == OutputUse::Captured)
        outputPipe.Open();
    process = ::fork();
    RequireCall(process >= 0, name);
    if (process == 0)
        Become(wordPointers.data(), options, inputPipe, outputPipe);
    // As a system call: the header of glibc 2.36 declares pidfd_open without C linkage.
    processDescriptor = static_cast<int>(::syscall(SYS_pidfd_open, process, 0));
    RequireCall(processDescriptor >= 0, name);
    if (options.hasInput)
        ::close(inputPipe.readEnd);
    input = inputPipe.writeEnd;
    if (options.output == OutputUse::Captured) {
        ::close(outputPipe.writeEnd);
        reader = std::thread([this, descriptor = outputPipe.readEnd] { ReadOutput(descriptor); });
    } else {
        const MutexLock lock(mutex);
        outputEnded = true;
    }
}

ChildProcess::~ChildProcess() {
    if (input >= 0)
        ::close(input);
    if (!hasEnded) {
        ::kill(process, SIGKILL);
        while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    ::close(processDescriptor);
    if (reader.joinable())
        reader.join();
}

void ChildProcess::ReadOutput(int descriptor) {
    char chunk[4096];
    for (ssize_t count = 0; (count = ::read(descriptor, chunk, sizeof chunk)) > 0;) {
        const MutexLock lock(mutex);
        output.append(chunk, static_cast<std::size_t>(count));
        if (isWindowsProgram)
            std::erase(output, '\r');
        outputChanged.NotifyAll();
    }
    ::close(descriptor);
    const MutexLock lock(mutex);
    outputEnded = true;
    outputChanged.NotifyAll();
}

bool ChildProcess::WaitForOutput(const std::string& text, std::chrono::milliseconds longest) {
    const TimePoint deadline = std::chrono::steady_clock::now() + longest;
    const MutexLock lock(mutex);
    for (bool isInTime = true;; isInTime = outputChanged.WaitUntil(mutex, deadline)) {
        const std::size_t found = output.find(text, searchedTo);
        if (found != std::string::npos) {
            searchedTo = found + text.size();
            return true;
        }
        if (outputEnded || !isInTime) {
            TellMissing(text);
            return false;
        }
    }
}

bool ChildProcess::WaitForLastLine(const std::string& text, std::chrono::milliseconds longest) {
    const TimePoint deadline = std::chrono::steady_clock::now() + longest;
    const MutexLock lock(mutex);
    bool isInTime = true;
    while (!output.ends_with(text + "\n") && isInTime)
        isInTime = outputChanged.WaitUntil(mutex, deadline);
    const bool isThere = output.ends_with(text + "\n");
    if (!isThere)
        TellMissing(text);
    return isThere;
}

// The log of a failed test then shows what the program printed instead.
void ChildProcess::TellMissing(const std::string& text) const {
    std::cerr << name << (outputEnded ? " ended" : " was given up") << " without printing \"" << text
              << "\". Its output, with a mark where the search began:\n"
              << output.substr(0, searchedTo) << "<>" << output.substr(searchedTo) << std::endl;
}

std::string ChildProcess::Output() {
    const MutexLock lock(mutex);
    return output;
}

std::string ChildProcess::ReadLine(std::chrono::milliseconds longest) {
    const std::size_t start = searchedTo;
    if (!WaitForOutput("\n", longest))
        throw std::runtime_error(name + " printed no further line after: " + Output());
    return Output().substr(start, searchedTo - 1 - start);
}

void ChildProcess::WriteInput(const std::string& text) {
    assert(input >= 0);
    RequireCall(::write(input, text.data(), text.size()) == static_cast<ssize_t>(text.size()), "input of " + name);
}

void ChildProcess::Signal(int signal) {
    // Wine handles the signal by starting a thread for the program's console handler. It hangs if the signal has
    // interrupted an allocation. The first thread only waits and never allocates, so the signal goes to that one.
    if (isWindowsProgram && signal != SIGKILL)
        ::tgkill(process, process, SIGINT);
    else
        ::kill(process, signal);
}

bool ChildProcess::WaitForProcess(TimePoint deadline) const {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left <= std::chrono::milliseconds::zero())
            return false;
        pollfd end = {processDescriptor, POLLIN, 0};
        // A signal may interrupt the call, so less than 1 means another look at the time.
        if (::poll(&end, 1, static_cast<int>(left.count())) == 1)
            return true;
    }
}

bool ChildProcess::WaitForOutputEnd(TimePoint deadline) {
    const MutexLock lock(mutex);
    bool isInTime = true;
    while (!outputEnded && isInTime)
        isInTime = outputChanged.WaitUntil(mutex, deadline);
    return outputEnded;
}

int ChildProcess::WaitForExit(std::chrono::milliseconds longest) {
    assert(!hasEnded);
    const TimePoint deadline = std::chrono::steady_clock::now() + longest;
    // The output is complete only at its own end: the reader may lag behind the process.
    if (!WaitForProcess(deadline) || !WaitForOutputEnd(deadline))
        throw std::runtime_error(name + " has not ended; its output: " + Output());
    int status = 0;
    RequireCall(::waitpid(process, &status, 0) == process, name);
    hasEnded = true;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}
