#pragma once
// A trace of one logging run: each line with the time since the start and the time since the line before. The lines
// wait in memory until Flush, so that many are written at once. One thread at a time.

#include "base/Clock.h"
#include "files/KelFile.h"
#include "logging/LogText.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace tarvin {

class CommsLog {
public:
    CommsLog(const Clock& clock, LastLogged& lastLogged) : clock(clock), lastLogged(lastLogged) {}

    // Starts a run in a new file. A run in progress ends without its waiting lines. After a failure no run is in
    // progress.
    Result<> Open(const std::filesystem::path& path);
    // Starts a run that goes on for weeks. It appends to the file; at `sizeLimit` bytes the file becomes "<path>.1", in
    // place of the one before, and a new one begins. Requires sizeLimit > 0. Fails also if another running program
    // writes this log, or if the file is no comms log: renaming would lose it. A file that is no comms log leaves a run
    // in progress as it is.
    Result<> OpenRolling(const std::filesystem::path& path, std::uint64_t sizeLimit);
    bool IsOpen() const { return file.IsOpen(); }
    // Goes on with the run that a failure of Flush has ended: appends to its file, and its times go on. Fails like
    // OpenRolling. Requires such a run.
    Result<> Resume();
    // The file of the last run.
    const std::filesystem::path& Path() const { return filePath; }

    // Adds a line of UTF-8 without its line end. Ignores an empty text, and one that repeats the last line unless
    // `force`.
    void LogLine(std::string_view text, bool force);

    // Whether the waiting lines fill a block, or fill the file of a rolling log.
    bool IsFlushDue() const;
    // Writes the waiting lines, all or none of them. A failure closes the log.
    Result<> Flush();
    // True if a new file has begun since the last call.
    bool TakeRolledOver() { return std::exchange(hasRolledOver, false); }
    // Writes the waiting lines and ends the run. Fails if some of them could not be written.
    Result<> Close();

private:
    Result<> Begin(const std::filesystem::path& path, KelFile::Mode mode);
    Result<> OpenLocked();
    Result<> WritePending();
    Result<> RollOver();
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
