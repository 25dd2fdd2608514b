#pragma once
// The trace of the line on its way from the engine to the window. Never makes the engine wait: a full queue becomes one
// gap line. Knows nothing of how lines are made or shown.

#include <atomic>
#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

namespace tarvin {

struct TrafficLine {
    enum class Kind { Received, Transmitted, Note };
    Kind kind = Kind::Note;
    std::string text; // UTF-8, without a line end
    // More of the line before, which was shown while it was still open.
    bool extendsLast = false;
};

class TrafficQueue {
public:
    static constexpr std::size_t capacity = 5000;

    // Whether anybody reads the lines. While nobody does, the engine makes none. Any thread.
    void SetWanted(bool isWanted);
    bool IsWanted() const { return wanted.load(std::memory_order_relaxed); }

    // True if the reader has to be woken: it has drained the queue since it was last told. Monitor thread.
    bool Push(TrafficLine line);

    // All lines so far, oldest first, with one line in place of those that did not fit. Window's thread.
    std::vector<TrafficLine> Take();

private:
    std::atomic<bool> wanted = false;
    std::mutex mutex;
    std::vector<TrafficLine> lines;
    std::size_t lostCount = 0;
};

}
