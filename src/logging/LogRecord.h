#pragma once
// The events of the logs, on their way from the monitor thread to the thread that writes them.

#include "base/Clock.h"
#include "logging/LogText.h"
#include "logging/TransferRecord.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace tarvin {

enum class LogKind : std::size_t { Comms, Activity, History };
inline constexpr std::size_t logKindCount = 3;

// Begins a comms log in the file at `path`. `report` heads each of its files. With a `sizeLimit` above 0 it rolls over
// at that many bytes.
struct CommsLogStart {
    std::filesystem::path path;
    std::uint64_t sizeLimit = 0;
    std::vector<std::string> report;
};

// A line of the comms log, as UTF-8 without its line end. A repetition of the last line is left out unless `force`.
struct CommsLine {
    std::string text;
    bool force = false;
};

struct CommsLogEnd {
    std::string lastLine;
};

// A line of the activity log at `path`. A repetition of the last line is left out unless `force`.
struct ActivityLine {
    std::filesystem::path path;
    KelText statusText;
    KelText programName; // the number of the NC file
    LocalTimeText localTime;
    bool force = false;
};

// Stands for lines for which there was no room.
struct LinesLost {
    LogKind log = LogKind::Comms;
    std::int64_t count = 0;
};

// Begins the history of `machine`: its past transfers are wanted.
struct HistoryStart {
    KelText machine;
};

// A row of the history. Behind a pointer, because the many lines of the comms log share the size of this type.
struct HistoryRow {
    std::shared_ptr<const TransferRecord> record;
};

// A user has seen that transfers of this number and direction have failed.
struct HistorySeen {
    KelText machine;
    KelText number;
    TransferDirection direction = TransferDirection::ToMachine;
};

// The rows of `machine` that are older than `period` are deleted. Their age counts from `now`, or from a day after the
// newest row of the history if that is earlier: a clock that stands years ahead must not delete everything.
struct HistoryExpiry {
    KelText machine;
    TransferRecord::Time now;
    std::chrono::milliseconds period{0};
};

// The program ends: the waiting lines of activity log and history get one more attempt.
struct LastAttempt {};

struct LogRecord {
    Clock::TimePoint time; // of the event
    std::variant<CommsLine, ActivityLine, CommsLogStart, CommsLogEnd, LinesLost, LastAttempt, HistoryStart, HistoryRow,
                 HistorySeen, HistoryExpiry>
        event;

    LogKind Log() const;
    // True for a line of traffic or status and for a row of the history: the record may be dropped for lack of room.
    bool IsLine() const {
        return std::holds_alternative<CommsLine>(event) || std::holds_alternative<ActivityLine>(event) ||
               std::holds_alternative<HistoryRow>(event);
    }
    // The memory that the record takes, within a few bytes.
    std::size_t ByteCount() const;
};

}
