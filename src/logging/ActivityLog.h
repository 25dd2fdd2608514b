#pragma once
// A history of status texts, one line each. Flush opens the file, appends the lines and closes it. Until then the lines
// wait in memory, so that no answer to the controller waits for the disk. Monitor thread only.

#include "base/KelText.h"
#include "logging/LogText.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tarvin {

class ActivityLog {
public:
    explicit ActivityLog(LastLogged& lastLogged) : lastLogged(lastLogged) {}

    // Adds a status text for the file at `path`, unless it repeats the line logged last. `programName` is the number of
    // the NC file.
    void LogStatusChange(const std::filesystem::path& path, const KelText& statusText, const KelText& programName);

    // Appends the waiting lines to their files. Lines that a file does not take are dropped. True also for a failure
    // with the same status text as the failure before: the user is told of each status text once.
    bool Flush();
    // True if the last Flush with a line to write has lost one.
    bool HasFailed() const { return !failedStatus.empty(); }

private:
    struct Entry {
        std::filesystem::path path;
        std::string statusText;
        std::string line;
        std::string lastLoggedBefore;
    };

    static bool Append(const Entry& entry);

    LastLogged& lastLogged;
    std::vector<Entry> entries;
    std::string failedStatus;
};

}
