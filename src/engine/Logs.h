#pragma once
// The engine's two logs: the trace of the line and the history of its transfers. They share the memory of the last
// line. A log that cannot be written is tried again each minute. Monitor thread.

#include "engine/EngineEvents.h"
#include "line/LineRecorder.h"
#include "logging/ActivityLog.h"
#include "logging/CommsLog.h"
#include "messages/MessageReport.h"
#include "settings/DownloadSettings.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin {

class Logs {
public:
    Logs(const Clock& clock, LineTrace& trace, EngineEvents& events);

    // Begins a comms log with the report of the settings. With a `sizeLimit` above 0 it rolls over at that many bytes.
    // The user is told if its file cannot be opened. A log that rolls over is then tried again, because no user stands
    // by to choose another file.
    void StartCommsLog(const std::filesystem::path& path, const DownloadSettings& settings, std::uint64_t sizeLimit);
    // Ends the comms log with `lastLine`. Does nothing if none is open.
    void EndCommsLog(std::string_view lastLine);
    bool IsCommsLogOpen() const { return commsLog.IsOpen(); }
    // A line of the comms log. Without `force` a repetition of the last line is left out.
    void LogLine(std::string_view text, bool force) { commsLog.LogLine(text, force); }

    // Adds a status text to the activity log, if the settings ask for one. `fileName` is the number of its file.
    // Without `force` a repetition of the last line is left out.
    void LogStatusChange(const DownloadSettings& settings, const KelText& statusText, const KelText& fileName,
                         bool force);

    // Writes to the disk what has been logged since the last call. The user is told of a log that cannot be written:
    // once, until it has been good for a minute. The comms log then lacks what comes until an attempt succeeds, and a
    // line of it tells the gap. The lines of the activity log wait.
    void Flush();
    // Ends the comms log, and writes what waits for the activity log even if its next attempt is not due.
    void Close();

    LineRecorder& Recorder() { return recorder; }

private:
    // A comms log that cannot be written.
    struct Gap {
        KelText reason;
        Clock::TimePoint since;
        Clock::TimePoint lastAttempt;
        // For a log that has not begun: the size limit that its start asked for, and its path.
        std::optional<std::uint64_t> sizeLimit = {};
        std::filesystem::path path = {};
    };

    void ShowProblem(const std::filesystem::path& path, const Error& reason);
    void LogStart();
    void LogReport();
    void FlushCommsLog();
    void EndGap();

    const Clock& clock;
    EngineEvents& events;
    LastLogged lastLogged;
    CommsLog commsLog;
    ActivityLog activityLog;
    LineRecorder recorder;
    std::vector<std::string> report; // the head of each file of the comms log
    std::optional<Gap> gap;
    std::optional<Clock::TimePoint> lastGapEnd;
};

}
