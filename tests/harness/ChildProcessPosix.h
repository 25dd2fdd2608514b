#pragma once
// A program that a test or benchmark runs. Its output is kept as it comes. The program ends with the thread that
// started it, however that ends. Failures throw.

#include "base/Mutex.h"

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <sys/types.h>

namespace tarvin::test {

class ChildProcess {
public:
    // Captured: standard output and standard error can be read here. Discarded: standard output is dropped, standard
    // error stays our own, and no thread of ours runs for the program.
    enum class OutputUse { Captured, Discarded };

    struct Options {
        std::vector<std::string> arguments = {};
        // Variables set in addition to our own environment.
        std::map<std::string, std::string> environment = {};
        // Runs in the child before the program starts. May only call what is safe after a fork.
        std::function<void()> beforeStart = {};
        // Standard input is a pipe for WriteInput. Otherwise it is the null device.
        bool hasInput = false;
        OutputUse output = OutputUse::Captured;
    };

    // `program` is the name of one of the project's programs, or the whole path of another one. With
    // TARVIN_WINDOWS_PROGRAMS set, starts the Windows program of that name under Wine, except for tarvin-controller,
    // and removes the carriage returns from its output.
    ChildProcess(const std::string& program, const Options& options);
    // Kills the program if it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Waits until `text` appears in the output after the place where the last successful call found its text. False if
    // `longest` passes or the output ends first.
    bool WaitForOutput(const std::string& text, std::chrono::milliseconds longest = std::chrono::seconds(20));
    // Waits until the output ends with `text` and a line end. False if `longest` passes first.
    bool WaitForLastLine(const std::string& text, std::chrono::milliseconds longest = std::chrono::seconds(20));
    // All output so far.
    std::string Output();
    // Waits for the next line after the place that WaitForOutput has reached. Throws if none comes.
    std::string ReadLine(std::chrono::milliseconds longest = std::chrono::seconds(20));
    // Requires Options::hasInput.
    void WriteInput(const std::string& text);
    // Sends the signal. A Windows program gets Ctrl-C instead of every signal but SIGKILL.
    void Signal(int signal);
    // Waits for the end of the program and of its output. Returns its exit code, or the negative number of the signal
    // that ended it. Throws if `longest` passes first. Call it once.
    int WaitForExit(std::chrono::milliseconds longest = std::chrono::seconds(30));
    pid_t Id() const { return process; }

private:
    using TimePoint = std::chrono::steady_clock::time_point;

    void ReadOutput(int descriptor);
    bool WaitForProcess(TimePoint deadline) const;
    bool WaitForOutputEnd(TimePoint deadline);
    void TellMissing(const std::string& text) const REQUIRES(mutex);

    std::string name;
    bool isWindowsProgram = false;
    pid_t process = -1;
    int processDescriptor = -1; // becomes readable when the process ends
    bool hasEnded = false;
    int input = -1;
    std::size_t searchedTo = 0; // place in the output that WaitForOutput has reached

    Mutex mutex;
    Condition outputChanged;
    std::string output GUARDED_BY(mutex);
    bool outputEnded GUARDED_BY(mutex) = false;
    std::thread reader;
};

}
