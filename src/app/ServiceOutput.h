#pragma once
// Hands the lines of a service to a printer, from a thread of its own: the reader of the output may stop reading, and
// the engine must not wait for it.

#include "base/KelText.h"
#include "base/Mutex.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>

namespace tarvin {

// How much a line matters to a reader. Progress: one of many lines about the same transfer.
enum class LineKind { Progress, Information, Warning, Error };

struct ServiceLine {
    std::chrono::system_clock::time_point time;
    std::string text; // in UTF-8, without control characters
    LineKind kind = LineKind::Information;
};

class ServiceOutput {
public:
    // Prints one line. Called by the printing thread, which may outlive the object.
    using Printer = std::function<void(const ServiceLine&)>;

    explicit ServiceOutput(Printer printLine);
    // Finishes.
    ~ServiceOutput() { Finish(); }
    ServiceOutput(const ServiceOutput&) = delete;
    ServiceOutput& operator=(const ServiceOutput&) = delete;

    // Adds one line with the time of this call. Control characters become blanks. If the reader is 10000 lines behind,
    // the oldest line is dropped, and one line tells how many are missing. Any thread.
    void Add(KelTextView text, LineKind kind = LineKind::Information);

    // Adds a note of AppInterface as one line, a warning: its line ends become " - ". Any thread.
    void AddNote(KelTextView note);

    // Prints the lines that are left, for half a second at most. True if all have been printed; false leaves the
    // printing thread behind, waiting for the reader.
    bool Finish();

private:
    static constexpr std::size_t capacity = 10000;

    // Held by the printing thread too, which may outlive the object.
    struct Shared {
        explicit Shared(Printer printLine) : printLine(std::move(printLine)) {}

        const Printer printLine;
        Mutex mutex;
        Condition changed;
        std::deque<ServiceLine> lines GUARDED_BY(mutex);
        std::size_t lostCount GUARDED_BY(mutex) = 0;
        bool isClosing GUARDED_BY(mutex) = false;
        bool isDone GUARDED_BY(mutex) = false;
    };

    static bool TakeLine(Shared& shared, ServiceLine& line, std::size_t& lostCount);
    static void Print(Shared& shared);

    const std::shared_ptr<Shared> shared;
    std::thread printer;
};

}
