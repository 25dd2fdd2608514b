#pragma once
// A history of status texts, one line each. Flush opens the file, appends the lines and closes it. Until then the lines
// wait in memory. One thread at a time.

#include "base/Clock.h"
#include "base/Result.h"
#include "logging/LogRecord.h"

#include <deque>
#include <filesystem>
#include <string>

namespace tarvin {

class ActivityLog {
public:
    // The lines that wait at most for a file that cannot be written.
    static constexpr std::size_t mostLines = 1000;

    ActivityLog(const Clock& clock, LastLogged& lastLogged) : clock(clock), lastLogged(lastLogged) {}

    // Adds a line. Lines that wait go to the newest path.
    void Add(const ActivityLine& line);
    // Adds a line that stands for no status.
    void AddNote(const KelText& note);

    // Appends the waiting lines to the file. Fails once for each time in which the file cannot be written. Meanwhile
    // the lines wait, and Flush tries again each minute, or at once with `force`. If more lines wait than there is room
    // for, the oldest ones are dropped, and a line counts them.
    Result<> Flush(bool force = false);
    // True while the lines wait for the next attempt.
    bool IsFailing() const { return isFailing; }
    // The file of the lines.
    const std::filesystem::path& Path() const { return path; }

private:
    void Keep(std::string line);
    Result<> Append() const;

    const Clock& clock;
    LastLogged& lastLogged;
    std::filesystem::path path;
    std::deque<std::string> lines;
    std::size_t lostCount = 0;
    bool isFailing = false;
    Clock::TimePoint lastAttempt;
};

}
