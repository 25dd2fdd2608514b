#pragma once
// A trace of one logging run: every line with the time since the start and since the line before. Lines are kept until
// Flush, so that the line to the controller never waits for the disk. Knows nothing of what the lines say.
// Monitor thread only.

#include "base/Clock.h"
#include "files/KelFile.h"
#include "logging/LastLogged.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace tarvin {

class CommsLog {
public:
    CommsLog(const Clock& timeSource, LastLogged& sharedMemory) : clock(timeSource), lastLogged(sharedMemory) {}

    // Starts a run in a fresh file; a run that is under way is ended without a word. False if the file cannot be
    // opened.
    bool Open(const std::filesystem::path& path);
    // A run that goes on for weeks: it is added to the file, and once that has grown to `largestSize` bytes it becomes
    // "<path>.1", in place of the one before, and a fresh one is begun. False also if the file belongs to another
    // program that runs, or is none of these logs: it would be moved away and lost.
    bool OpenRolling(const std::filesystem::path& path, std::uint64_t largestSize);
    bool IsOpen() const { return file.IsOpen(); }

    // A line, without its line end; UTF-8. An empty text is none, and one that repeats the last only counts if forced.
    void LogLine(std::string_view text, bool force);

    // Writes the lines since the last time. False, with the log closed, if the file does not take them any more.
    bool Flush();
    // Whether a fresh file has been begun since the last call.
    bool TakeRolledOver() { return std::exchange(hasRolledOver, false); }
    // Writes what is left and ends the run. False if not all could be written.
    bool Close();

private:
    bool Begin(const std::filesystem::path& path, KelFile::Mode mode);
    bool OpenOwn();
    bool RollOver();
    bool IsFileLost();

    const Clock& clock;
    LastLogged& lastLogged;
    KelFile file;
    std::filesystem::path filePath;
    std::uint64_t sizeLimit = 0; // 0: none
    std::uint64_t sizeBefore = 0;
    bool hasRolledOver = false;
    std::string pending;
    Clock::TimePoint started;
    Clock::TimePoint lastLookAtFile;
    std::int64_t previousTime = 0; // nanoseconds since the start
};

}
