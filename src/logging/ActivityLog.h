#pragma once
// A history of status texts, one line each, in a file that is opened and closed for every line. Lines are kept until
// Flush, so that an answer to the controller never waits for the disk. Knows nothing of what the texts mean.
// Monitor thread only.

#include "base/KelText.h"
#include "logging/LastLogged.h"
#include "logging/LocalTimeText.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tarvin {

class ActivityLog {
public:
    explicit ActivityLog(LastLogged& sharedMemory) : lastLogged(sharedMemory) {}

    // Takes a status text, unless it repeats the line logged last. `programName` is the number of the file in hand.
    void LogStatusChange(const std::filesystem::path& path, const KelText& statusText, const KelText& programName);

    // Appends the texts since the last time to their files. False if a file could not be opened or written, but only
    // once for each status text: nobody wants to be told of the same line ten times a second.
    bool Flush();
    // Whether the text of the last flush could not be written.
    bool HasFailed() const { return !complainedOf.empty(); }

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
    std::string complainedOf;
};

}
