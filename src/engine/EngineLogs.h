#pragma once
// The engine's two logs and what is common to them: one memory of the last line, and one way to say that a log cannot
// be written. Knows nothing of what is logged. Monitor thread only.

#include "engine/DownloadWindow.h"
#include "line/LineRecorder.h"
#include "logging/ActivityLog.h"
#include "logging/CommsLog.h"
#include "settings/DownloadSettings.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tarvin {

class EngineLogs {
public:
    EngineLogs(const Clock& clock, LineTrace& lineTrace, DownloadWindow& shownIn);

    // Begins a comms log with the report of the settings. With a limit it rolls over at that many bytes. The user
    // is told if its file cannot be opened.
    void StartCommsLog(const std::filesystem::path& path, const DownloadSettings& settings, std::uint64_t sizeLimit);
    // Ends it with that line; nothing if none is open.
    void EndCommsLog(std::string_view lastLine);
    bool IsCommsLogOpen() const { return commsLog.IsOpen(); }
    void LogLine(std::string_view text, bool force) { commsLog.LogLine(text, force); }

    // Whether the status that was logged last is still to be written, and worth another attempt.
    bool IsStatusUnwritten() const { return activityLog.HasFailed(); }
    // Adds a status text to the activity log, if the settings ask for one.
    void LogStatusChange(const DownloadSettings& settings, const KelText& statusText, const KelText& programName);

    // Writes to the disk what has been logged. A log that cannot be written is ended or passed over, and the user told.
    void Flush();

    LineRecorder& Recorder() { return recorder; }

private:
    void Complain();
    void LogReport();

    DownloadWindow& window;
    LastLogged lastLogged;
    CommsLog commsLog;
    ActivityLog activityLog;
    LineRecorder recorder;
    std::vector<std::string> report;
};

}
