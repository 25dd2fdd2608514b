#pragma once
// The engine's logs: the trace of the line, the list of its statuses, and the history of its transfers. A thread of
// their own writes them, and tries a log that cannot be written again each minute. Monitor thread.

#include "engine/EngineEvents.h"
#include "line/LineRecorder.h"
#include "logging/LogWriter.h"
#include "messages/MessageReport.h"
#include "settings/DownloadSettings.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace tarvin {

class Logs {
public:
    // The writing thread starts with the first line, and uses `files` from then on.
    Logs(const Clock& clock, LineTrace& trace, EngineEvents& events, std::unique_ptr<LogFiles> files);

    // Begins a comms log with the report of the settings. With a `sizeLimit` above 0 it rolls over at that many bytes.
    // The user is told if its file cannot be opened. A log that rolls over is then tried again, because no user stands
    // by to choose another file.
    void StartCommsLog(const std::filesystem::path& path, const DownloadSettings& settings, std::uint64_t sizeLimit);
    // Ends the comms log with `lastLine`. Does nothing if none was started.
    void EndCommsLog(std::string_view lastLine);
    // True from the start of a comms log, even before its file is open, until the log ends or is known to have failed.
    bool IsCommsLogOn() const { return lines.IsCommsLogOn(); }
    // A line of the comms log, and a note of the trace. Without `force` the log leaves out a repetition of its last
    // line.
    void LogLine(std::string_view text, bool force) {
        lines.LogLine(text, force);
        recorder.Note(text);
    }

    // Adds a status text to the activity log, if the settings ask for one. `fileName` is the number of its file.
    // Without `force` a repetition of the last line is left out.
    void LogStatusChange(const DownloadSettings& settings, const KelText& statusText, const KelText& fileName,
                         bool force);

    // Begins the machine's history: reads its past transfers, and deletes rows that are older than the settings allow,
    // now and once a day. `settings` outlives this object. Does nothing without a history, and so do the next two.
    void OpenHistory(const KelText& machine, const DownloadSettings& settings);
    // Adds a row. The writing thread computes the checksum of the `content`, if there is one.
    void AddToHistory(const TransferRecord& record);
    // A user has seen that transfers of this number and direction have failed. Requires an opened history.
    void MarkSeen(const KelText& number, TransferDirection direction);
    // The newest transfers before this run and all failures that no user has seen, oldest first. None before they have
    // been read, and once they have been taken.
    std::optional<std::vector<TransferRecord>> TakePastTransfers() { return std::exchange(pastTransfers, {}); }

    // Hands what has been logged since the last call to the writing thread, and takes the results of earlier calls. The
    // user is told of a log that cannot be written: once, until it has been good for a minute. The comms log then lacks
    // what comes until an attempt succeeds, and a line of it tells the gap. The lines of the activity log and the rows
    // of the history wait.
    void Flush();
    // Ends the comms log and the writing thread. Blocks until everything has been written, but for two seconds at most:
    // then the user is told how many lines are lost.
    void Close();

    // Blocks until everything that Flush has handed over has been written, or for `longest`. True if it has been
    // written.
    bool WaitUntilWritten(std::chrono::milliseconds longest) { return !writer || writer->WaitUntilWritten(longest); }

    LineRecorder& Recorder() { return recorder; }

private:
    void SwitchCommsLog(bool isOn);
    void HandOver();
    void TakeNews();
    void GiveUpWriter();
    void DeleteOldRows();
    void ShowProblem(const std::filesystem::path& path, const KelText& reason);

    const Clock& clock;
    EngineEvents& events;
    LogLines lines;
    LineRecorder recorder;
    std::unique_ptr<LogFiles> files;   // until the writer starts
    std::unique_ptr<LogWriter> writer; // none before the first line
    // For the report of a disk that hangs: where the lines go.
    std::filesystem::path commsLogPath;
    std::filesystem::path activityLogPath;
    const std::optional<std::filesystem::path> historyPath; // none without a history
    KelText historyMachine;
    const DownloadSettings* historySettings = nullptr; // until the history is opened
    Clock::TimePoint lastDeletion;
    std::optional<std::vector<TransferRecord>> pastTransfers;
    std::int64_t switchCount = 0; // starts and ends of the comms log so far
    bool isStarted = false;       // the last of these was a start
    bool isFailing = false;       // a log waits for its next attempt
    Clock::TimePoint lastHandOver;
};

}
