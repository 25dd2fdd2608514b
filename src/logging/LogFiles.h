#pragma once
// The files of the logs: the trace of the line, the list of its statuses, and the history of its transfers. Trace and
// statuses share the memory of the last line. A log that cannot be written is tried again each minute. One thread,
// which may block in the system for as long as a disk takes.

#include "base/Result.h"
#include "base/ThreadOwner.h"
#include "logging/ActivityLog.h"
#include "logging/CommsLog.h"
#include "logging/HistoryLog.h"
#include "logging/LogRecord.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarvin {

// A log that cannot be written.
struct LogProblem {
    std::filesystem::path path;
    Error reason;
};

// What the writing of records has led to.
struct LogNews {
    std::vector<LogProblem> problems; // worth telling the user
    std::int64_t switchCount = 0;     // the starts and ends of comms logs so far
    bool isCommsLogOpen = false;      // after the last of these
    bool isFailing = false;           // a log waits for its next attempt, for which Write has to be called
    // What the history holds of the transfers before this run, oldest first. Comes once.
    std::optional<std::vector<TransferRecord>> pastTransfers = {};

    bool HasSameState(const LogNews& other) const {
        return switchCount == other.switchCount && isCommsLogOpen == other.isCommsLogOpen &&
               isFailing == other.isFailing;
    }
};

class LogFiles {
public:
    // Without a `history` its rows are ignored.
    explicit LogFiles(std::unique_ptr<TransferHistory> history = nullptr)
        : commsLog(clock, lastLogged), activityLog(clock, lastLogged) {
        if (history)
            historyLog.emplace(clock, std::move(history));
    }
    virtual ~LogFiles() = default;
    LogFiles(const LogFiles&) = delete;
    LogFiles& operator=(const LogFiles&) = delete;

    // The file of the history. None without a history. Any thread.
    std::optional<std::filesystem::path> HistoryPath() const {
        return historyLog ? std::optional(historyLog->Path()) : std::nullopt;
    }

    // Writes the records, oldest first, and tries a failed log again if a minute has passed at `now`. A problem is told
    // once, until its log has been good for a minute. The comms log then lacks what comes until an attempt succeeds,
    // and a line of it tells the gap. The lines of the activity log and the rows of the history wait.
    virtual LogNews Write(const std::vector<LogRecord>& records, Clock::TimePoint now);

private:
    // Stands still at the time of the event that is being written.
    class EventClock : public Clock {
    public:
        TimePoint Now() const override { return now; }
        TimePoint now;
    };

    // A comms log that cannot be written.
    struct Gap {
        KelText reason;
        Clock::TimePoint since;
        Clock::TimePoint lastAttempt;
        // For a log that has not begun: its start.
        std::optional<CommsLogStart> start = {};
    };

    void Take(const CommsLogStart& start);
    void Take(const CommsLine& line) { commsLog.LogLine(line.text, line.force); }
    void Take(const CommsLogEnd& end);
    void Take(const ActivityLine& line) { activityLog.Add(line); }
    void Take(const LinesLost& lost);
    void Take(const LastAttempt& attempt);
    void Take(const HistoryStart& start);
    void Take(const HistoryRow& row);
    void Take(const HistorySeen& seen);
    void Take(const HistoryExpiry& expiry);
    void LogStart();
    void LogReport();
    void FlushCommsLog();
    void FlushActivityLog(bool force);
    void FlushHistory();
    void EndGap();

    ThreadOwner owner;
    EventClock clock;
    LastLogged lastLogged;
    CommsLog commsLog;
    ActivityLog activityLog;
    std::optional<HistoryLog> historyLog;
    bool isEnding = false;           // the history gets its last attempt
    std::vector<std::string> report; // the head of each file of the comms log
    std::optional<Gap> gap;
    std::optional<Clock::TimePoint> lastGapEnd;
    std::vector<LogProblem> problems;
    std::int64_t switchCount = 0;
};

}
