#pragma once
// A history of status texts, one line each. Flush opens the file, appends the lines and closes it. Until then the lines
// wait in memory, so that no answer to the controller waits for the disk. Monitor thread only.

#include "base/Clock.h"
#include "base/Result.h"
#include "logging/LogText.h"

#include <deque>
#include <filesystem>
#include <string>

namespace tarvin {

class ActivityLog {
public:
    // The lines that wait at most for a file that cannot be written.
    static constexpr std::size_t mostLines = 1000;

    ActivityLog(const Clock& clock, LastLogged& lastLogged) : clock(clock), lastLogged(lastLogged) {}

    // Adds a status text for the file at `path`. Ignores one that repeats the line logged last unless `force`.
    // `programName` is the number of the NC file. Lines that wait go to the newest path.
    void LogStatusChange(const std::filesystem::path& path, const KelText& statusText, const KelText& programName,
                         bool force);

    // Appends the waiting lines to the file. Fails once for each time in which the file cannot be written. Meanwhile
    // the lines wait, and Flush tries again each minute, or at once with `force`. If more lines wait than there is room
    // for, the oldest ones are dropped, and a line counts them.
    Result<> Flush(bool force = false);
    // The file of the lines.
    const std::filesystem::path& Path() const { return path; }

private:
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
