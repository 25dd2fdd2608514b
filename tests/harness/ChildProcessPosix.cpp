#include "harness/ChildProcessPosix.h"

#include "harness/WindowsProgramsPosix.h"

#include <csignal>
#include <cstdlib>

#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvin::test {

ChildProcess::ChildProcess(const std::string& program, const Options& options) {
    isWindowsProgram = AreWindowsProgramsMeant() && program != "tarvin-controller";
    std::vector<std::string> words =
        isWindowsProgram ? WindowsProgramWords(program) : std::vector<std::string>{TARVIN_PROGRAM_FOLDER "/" + program};
    words.insert(words.end(), options.arguments.begin(), options.arguments.end());
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    int ends[2] = {-1, -1};
    REQUIRE(::pipe2(ends, O_CLOEXEC) == 0);
    int inputEnds[2] = {-1, -1};
    if (options.hasInput)
        REQUIRE(::pipe2(inputEnds, O_CLOEXEC) == 0);
    process = ::fork();
    REQUIRE(process >= 0);
    if (process == 0) {
        if (options.hasInput)
            ::dup2(inputEnds[0], STDIN_FILENO);
        ::dup2(ends[1], STDOUT_FILENO);
        ::dup2(ends[1], STDERR_FILENO);
        for (const auto& [name, value] : options.environment)
            ::setenv(name.c_str(), value.c_str(), 1);
        if (options.beforeStart)
            options.beforeStart();
        ::execv(arguments.front(), arguments.data());
        ::_exit(127);
    }
    ::close(ends[1]);
    if (options.hasInput)
        ::close(inputEnds[0]);
    input = inputEnds[1];
    reader = std::thread([this, end = ends[0]] { ReadOutput(end); });
}

ChildProcess::~ChildProcess() {
    if (input >= 0)
        ::close(input);
    if (!hasEnded) {
        ::kill(process, SIGKILL);
        ::waitpid(process, nullptr, 0);
    }
    reader.join();
}

void ChildProcess::ReadOutput(int end) {
    char chunk[4096];
    for (ssize_t count = ::read(end, chunk, sizeof chunk); count > 0; count = ::read(end, chunk, sizeof chunk)) {
        const std::lock_guard lock(mutex);
        output.append(chunk, static_cast<std::size_t>(count));
        if (isWindowsProgram)
            std::erase(output, '\r');
        changed.notify_all();
    }
    ::close(end);
    const std::lock_guard lock(mutex);
    outputEnded = true;
    changed.notify_all();
}

bool ChildProcess::WaitForOutput(const std::string& text, std::chrono::milliseconds longest) {
    std::unique_lock lock(mutex);
    std::size_t found = std::string::npos;
    changed.wait_for(lock, longest, [&] {
        found = output.find(text, lookedAt);
        return found != std::string::npos || outputEnded;
    });
    if (found == std::string::npos)
        return false;
    lookedAt = found + text.size();
    return true;
}

bool ChildProcess::WaitForLastLine(const std::string& text, std::chrono::milliseconds longest) {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, longest, [&] { return output.ends_with(text + "\n"); });
}

std::string ChildProcess::Output() {
    const std::lock_guard lock(mutex);
    return output;
}

std::string ChildProcess::ReadLine(std::chrono::milliseconds longest) {
    const std::size_t begin = lookedAt;
    REQUIRE_MESSAGE(WaitForOutput("\n", longest), Output());
    return Output().substr(begin, lookedAt - 1 - begin);
}

void ChildProcess::WriteInput(const std::string& text) {
    REQUIRE(::write(input, text.data(), text.size()) == static_cast<ssize_t>(text.size()));
}

void ChildProcess::Signal(int signal) {
    // Wine starts a thread for the program's console handler in the handler of the signal, which hangs for good where
    // it interrupts an allocation. The first thread waits and allocates nothing.
    if (isWindowsProgram)
        ::tgkill(process, process, SIGINT);
    else
        ::kill(process, signal);
}

int ChildProcess::WaitForExit(std::chrono::milliseconds longest) {
    // Its output ends with it: that is what can be waited for with a bound.
    {
        std::unique_lock lock(mutex);
        REQUIRE_MESSAGE(changed.wait_for(lock, longest, [this] { return outputEnded; }), output);
    }
    int status = 0;
    REQUIRE(::waitpid(process, &status, 0) == process);
    hasEnded = true;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}
