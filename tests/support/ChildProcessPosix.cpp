#include "support/ChildProcessPosix.h"

#include <csignal>
#include <cstdlib>

#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvin::test {

ChildProcess::ChildProcess(const std::string& program, const Options& options) {
    const std::string path = std::string(TARVIN_PROGRAM_FOLDER) + "/" + program;
    std::vector<std::string> words = options.arguments;
    words.insert(words.begin(), path);
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    int ends[2] = {-1, -1};
    REQUIRE(::pipe2(ends, O_CLOEXEC) == 0);
    process = ::fork();
    REQUIRE(process >= 0);
    if (process == 0) {
        ::dup2(ends[1], STDOUT_FILENO);
        ::dup2(ends[1], STDERR_FILENO);
        for (const auto& [name, value] : options.environment)
            ::setenv(name.c_str(), value.c_str(), 1);
        if (options.beforeStart)
            options.beforeStart();
        ::execv(path.c_str(), arguments.data());
        ::_exit(127);
    }
    ::close(ends[1]);
    reader = std::thread([this, end = ends[0]] { ReadOutput(end); });
}

ChildProcess::~ChildProcess() {
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

void ChildProcess::Signal(int signal) {
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
