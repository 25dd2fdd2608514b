#pragma once
// The trace of the line on its way from the engine to a window.

#include "base/Clock.h"
#include "base/Mutex.h"

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

namespace tarvin {

// One line of the trace, from the recorder to the pane that shows it.
struct TrafficLine {
    // A note tells a hold, an outage or the like. It stands for no bytes.
    enum class Kind { Received, Transmitted, Note };
    Kind kind = Kind::Note;
    std::string text; // UTF-8, without a line end
    // Continues the line before it, which was shown while it was still open.
    bool extendsLast = false;
    // When the line reached the trace, by the engine's clock.
    Clock::TimePoint time = {};
};

// Bounded: a slow reader loses lines and never delays the engine. Any thread.
class TrafficQueue {
public:
    static constexpr std::size_t capacity = 5000;

    // Switches the trace on or off and empties the queue. The engine makes no lines while the trace is off.
    void SetWanted(bool isWanted) EXCLUDES(mutex);
    bool IsWanted() const { return wanted.load(std::memory_order_relaxed); }

    // True for the first line since the queue was empty: the reader has to be told.
    bool Push(TrafficLine line) EXCLUDES(mutex);

    // Removes and returns all lines, oldest first. One note stands for the lines that did not fit.
    std::vector<TrafficLine> Take() EXCLUDES(mutex);

private:
    std::atomic<bool> wanted = false;
    Mutex mutex;
    std::vector<TrafficLine> lines GUARDED_BY(mutex);
    std::size_t lostCount GUARDED_BY(mutex) = 0;
};

}
