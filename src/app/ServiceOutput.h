#pragma once
// Prints the lines of a service on standard output, from a thread of its own: the reader of the output may stop
// reading, and the engine must not wait for it.

#include "base/KelText.h"
#include "base/Mutex.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <thread>

namespace tarvin {

class ServiceOutput {
public:
    ServiceOutput();
    // Finishes.
    ~ServiceOutput() { Finish(); }
    ServiceOutput(const ServiceOutput&) = delete;
    ServiceOutput& operator=(const ServiceOutput&) = delete;

    // Adds one line, which begins with the local time of this call in milliseconds. Control characters become blanks.
    // If the reader is 10000 lines behind, the oldest line is dropped, and one line tells how many are missing. Any
    // thread.
    void Add(KelTextView text);

    // Adds a note of AppInterface as one line: its line ends become " - ". Any thread.
    void AddNote(KelTextView note);

    // Prints the lines that are left, for half a second at most. True if all have been printed; false leaves the
    // printing thread behind, waiting for the reader.
    bool Finish();

private:
    static constexpr std::size_t capacity = 10000;

    struct Line {
        std::chrono::system_clock::time_point time;
        std::string text;
    };

    // Held by the printing thread too, which may outlive the object.
    struct Shared {
        Mutex mutex;
        Condition changed;
        std::deque<Line> lines GUARDED_BY(mutex);
        std::size_t lostCount GUARDED_BY(mutex) = 0;
        bool isClosing GUARDED_BY(mutex) = false;
        bool isDone GUARDED_BY(mutex) = false;
    };

    static bool TakeLine(Shared& shared, Line& line, std::size_t& lostCount);
    static void Print(Shared& shared);

    const std::shared_ptr<Shared> shared;
    std::thread printer;
};

}
