#pragma once
// The lines that a service prints, on their way to standard output. Whoever adds a line never waits for whoever reads
// them. Knows nothing of what the lines say.

#include "base/KelText.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace tarvin {

class ServiceOutput {
public:
    ServiceOutput();
    ~ServiceOutput() { Finish(); }
    ServiceOutput(const ServiceOutput&) = delete;
    ServiceOutput& operator=(const ServiceOutput&) = delete;

    // One line, headed by the local time of this call in milliseconds. Any thread.
    void Add(KelTextView text);

    // Prints what is left, but gives it up if the reader does not take it for a short while. True if all is printed.
    bool Finish();

private:
    static constexpr std::size_t capacity = 10000;

    struct Line {
        std::chrono::system_clock::time_point time;
        std::string text;
    };

    // Outlives the output if a reader keeps the printing thread from ending.
    struct Shared {
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<Line> lines;
        std::size_t lostCount = 0;
        bool isClosing = false;
        bool isDone = false;
    };

    static void Print(Shared& shared);

    std::shared_ptr<Shared> shared;
    std::thread printer;
};

}
