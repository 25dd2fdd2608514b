#pragma once
// The engine's two logs: the trace of the line and the history of its transfers. Each drops a line that repeats the
// last line of either log. Monitor thread.

#include "engine/EngineEvents.h"
#include "line/LineRecorder.h"
#include "logging/ActivityLog.h"
#include "logging/CommsLog.h"
#include "messages/MessageReport.h"
#include "settings/DownloadSettings.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin {

class Logs {
public:
    Logs(const Clock& clock, LineTrace& trace, EngineEvents& events);

    // Begins a comms log with the report of the settings. With a `sizeLimit` above 0 it rolls over at that many bytes.
    // The user is told if its file cannot be opened.
    void StartCommsLog(const std::filesystem::path& path, const DownloadSettings& settings, std::uint64_t sizeLimit);
    // Ends the comms log with `lastLine`. Does nothing if none is open.
    void EndCommsLog(std::string_view lastLine);
    bool IsCommsLogOpen() const { return commsLog.IsOpen(); }
    // A line of the comms log. Without `force` a repetition of the last line is left out.
    void LogLine(std::string_view text, bool force) { commsLog.LogLine(text, force); }

    // Adds a status text to the activity log, if the settings ask for one. `fileName` is the number of its file.
    void LogStatusChange(const DownloadSettings& settings, const KelText& statusText, const KelText& fileName);
    // Whether the last status text could not be written and is worth another attempt.
    bool IsStatusUnwritten() const { return activityLog.HasFailed(); }

    // Writes to the disk what has been logged since the last call. A comms log that cannot be written is ended; the
    // user is told.
    void Flush();

    LineRecorder& Recorder() { return recorder; }

private:
    void ShowProblem();
    void LogReport();

    EngineEvents& events;
    LastLogged lastLogged;
    CommsLog commsLog;
    ActivityLog activityLog;
    LineRecorder recorder;
    std::vector<std::string> report; // the head of each file of the comms log
};

}
