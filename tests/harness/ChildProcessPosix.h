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
        bool hasInput = false;                               // a pipe; the test's own standard input otherwise
    };

    // `program` is the name of one of the project's programs. Standard error goes where standard output goes. Where the
    // Windows programs are meant, these are started, apart from the simulated controller; the lines of their output end
    // as elsewhere then.
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
    // The next line behind what was looked at; fails the test if none comes.
    std::string ReadLine(std::chrono::milliseconds longest = std::chrono::seconds(20));
    void WriteInput(const std::string& text);
    // A Windows program is asked to end as by Ctrl-C, whatever the signal.
    void Signal(int signal);
    // The exit code; a negative signal number if a signal ended it; fails the test if it does not end.
    int WaitForExit(std::chrono::milliseconds longest = std::chrono::seconds(30));
    pid_t Id() const { return process; }

private:
    void ReadOutput(int end);

    pid_t process = -1;
    bool isWindowsProgram = false;
    int input = -1;
    bool hasEnded = false;
    std::mutex mutex;
    std::condition_variable changed;
    std::string output;
    std::size_t lookedAt = 0;
    bool outputEnded = false;
    std::thread reader;
};

}
