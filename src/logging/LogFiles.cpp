#include "logging/LogFiles.h"

#include "base/Messages.h"

#include <utility>

namespace tarvin {

LogNews LogFiles::Write(const std::vector<LogRecord>& records, Clock::TimePoint now) {
    owner.AssertOwned();
    for (const LogRecord& record : records) {
        clock.now = record.time;
        std::visit([this](const auto& event) { Take(event); }, record.event);
        // A slow disk lets many lines wait. They roll over at the same line as if each had been written at once.
        if (commsLog.IsFlushDue())
            FlushCommsLog();
    }
    clock.now = now;
    // The few lines of the activity log first: the program may end while a slow disk takes a long trace.
    FlushActivityLog(false);
    if (gap && now - gap->lastAttempt >= logRetryPeriod)
        EndGap();
    FlushCommsLog();
    // Last: the checksum of a large file takes seconds, and so does a database that others write.
    FlushHistory();
    const bool isFailing = gap || activityLog.IsFailing() || (historyLog && historyLog->IsFailing());
    return {std::exchange(problems, {}), switchCount, commsLog.IsOpen(), isFailing,
            historyLog ? historyLog->TakePastTransfers() : std::nullopt};
}

void LogFiles::Take(const CommsLogStart& start) {
    FlushCommsLog();
    ++switchCount;
    gap.reset();
    lastGapEnd.reset();
    report = start.report;
    const auto opened =
        start.sizeLimit == 0 ? commsLog.Open(start.path) : commsLog.OpenRolling(start.path, start.sizeLimit);
    if (opened) {
        LogStart();
        return;
    }
    problems.push_back({start.path, opened.Reason()});
    // Only a log that rolls over is tried again: of the other one a user has just been told, and can choose again.
    if (start.sizeLimit > 0 && !commsLog.IsOpen())
        gap = Gap{opened.Reason().text, clock.now, clock.now, start};
}

void LogFiles::LogStart() {
    commsLog.LogLine(text::trace::startOfLogging, false);
    LogReport();
}

void LogFiles::LogReport() {
    for (const std::string& line : report)
        commsLog.LogLine(line, false);
}

void LogFiles::Take(const CommsLogEnd& end) {
    ++switchCount;
    gap.reset();
    if (!commsLog.IsOpen())
        return;
    commsLog.LogLine(end.lastLine, false);
    if (const auto closed = commsLog.Close(); !closed)
        problems.push_back({commsLog.Path(), closed.Reason()});
}

void LogFiles::Take(const LinesLost& lost) {
    const KelText count = ToText(lost.count);
    if (lost.log == LogKind::Comms)
        commsLog.LogLine(ToUtf8(Filled(text::trace::linesNotLogged, {count})), true);
    else if (lost.log == LogKind::Activity)
        activityLog.AddNote(Filled(text::activity::linesNotWritten, {count}));
    else if (historyLog)
        historyLog->CountLost(lost.count);
}

void LogFiles::Take(const LastAttempt&) {
    FlushActivityLog(true);
    isEnding = true;
}

void LogFiles::Take(const HistoryStart& start) {
    if (historyLog)
        historyLog->Start(start.machine);
}

void LogFiles::Take(const HistoryRow& row) {
    if (historyLog)
        historyLog->Add(row);
}

void LogFiles::Take(const HistorySeen& seen) {
    if (historyLog)
        historyLog->Add(seen);
}

void LogFiles::Take(const HistoryExpiry& expiry) {
    if (historyLog)
        historyLog->Add(expiry);
}

void LogFiles::FlushCommsLog() {
    auto flushed = commsLog.Flush();
    // Each new file repeats the line settings: a reader may receive only this file.
    if (commsLog.TakeRolledOver()) {
        LogReport();
        if (flushed)
            flushed = commsLog.Flush();
    }
    if (flushed)
        return;
    gap = Gap{flushed.Reason().text, clock.now, clock.now};
    // A full disk takes a line now and then. It is one trouble, told once.
    if (!lastGapEnd || clock.now - *lastGapEnd >= logRetryPeriod)
        problems.push_back({commsLog.Path(), flushed.Reason()});
}

void LogFiles::FlushActivityLog(bool force) {
    if (const auto flushed = activityLog.Flush(force); !flushed)
        problems.push_back({activityLog.Path(), flushed.Reason()});
}

void LogFiles::FlushHistory() {
    if (!historyLog)
        return;
    const bool isLast = std::exchange(isEnding, false);
    const auto flushed = historyLog->Flush(isLast);
    if (flushed)
        return;
    problems.push_back({historyLog->Path(), flushed.Reason()});
    // No window may be left to show a box, and the activity log has the transfers.
    if (isLast && !activityLog.Path().empty()) {
        activityLog.AddNote(Filled(text::activity::historyNotWritten, {flushed.Reason().text}));
        FlushActivityLog(true);
    }
}

void LogFiles::EndGap() {
    gap->lastAttempt = clock.now;
    const auto opened = gap->start ? commsLog.OpenRolling(gap->start->path, gap->start->sizeLimit) : commsLog.Resume();
    if (!opened)
        return;
    const Gap ended = std::move(*gap);
    gap.reset();
    lastGapEnd = clock.now;
    if (ended.start)
        LogStart();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(clock.now - ended.since);
    commsLog.LogLine(ToUtf8(Filled(text::trace::logGap, {ToText(seconds.count()), ended.reason})), true);
}

}
