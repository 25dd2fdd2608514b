#pragma once
// A program that a test runs, with its output read as it comes.

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <sys/types.h>

namespace tarvin::test {

class ChildProcess {
public:
    struct Options {
        std::vector<std::string> arguments = {};
        std::map<std::string, std::string> environment = {}; // over the test's own
        std::function<void()> beforeStart = {};              // in the child; what is safe after a fork only
    };

    // `program` is the name of one of the project's programs. Standard error goes where standard output goes.
    ChildProcess(const std::string& program, const Options& options);
    // Kills what is still running.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // True once the output holds the text; false if the time is up or the output has ended without it. Looks at what
    // came behind the text of the last call that was true.
    bool WaitForOutput(const std::string& text, std::chrono::milliseconds longest = std::chrono::seconds(20));
    // True once the last line of the output ends with the text.
    bool WaitForLastLine(const std::string& text, std::chrono::milliseconds longest = std::chrono::seconds(20));
    std::string Output();
    void Signal(int signal);
    // The exit code; a negative signal number if a signal ended it; fails the test if it does not end.
    int WaitForExit(std::chrono::milliseconds longest = std::chrono::seconds(30));
    pid_t Id() const { return process; }

private:
    void ReadOutput(int end);

    pid_t process = -1;
    bool hasEnded = false;
    std::mutex mutex;
    std::condition_variable changed;
    std::string output;
    std::size_t lookedAt = 0;
    bool outputEnded = false;
    std::thread reader;
};

}
