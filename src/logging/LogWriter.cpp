#include "logging/LogWriter.h"

#include <cassert>
#include <iterator>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

// The thread waits so long for more lines before it writes. An exchange with the controller takes some milliseconds, so
// a running transfer seldom has to wake the thread.
constexpr auto gatheringTime = 20ms;

}

LogWriter::LogWriter(std::unique_ptr<LogFiles> files) : files(std::move(files)) {
    assert(this->files);
    Start();
}

LogWriter::~LogWriter() {
    LogWriter::Stop();
    Wait();
}

void LogWriter::Stop() {
    const MutexLock lock(mutex);
    wThread::Stop();
    changed.NotifyAll();
}

void LogWriter::HandOver(std::vector<LogRecord>& records, Clock::TimePoint now) {
    const MutexLock lock(mutex);
    for (LogRecord& record : records) {
        Room& room = unwritten[static_cast<std::size_t>(record.Log())];
        const std::size_t byteCount = record.ByteCount();
        if (record.IsLine() && room.byteCount + byteCount > longestWaiting) {
            ++room.lostCount;
            room.lastLost = record.time;
            continue;
        }
        TellLost(record.Log());
        room.byteCount += byteCount;
        if (record.IsLine() || std::holds_alternative<CommsLogEnd>(record.event))
            ++room.lineCount;
        waiting.push_back(std::move(record));
    }
    records.clear();
    handedOver = now;
    isDue = true;
    if (isAsleep)
        changed.NotifyAll();
}

// Puts the count of dropped lines behind the last line that had room.
void LogWriter::TellLost(LogKind log) {
    Room& room = unwritten[static_cast<std::size_t>(log)];
    if (room.lostCount > 0)
        waiting.push_back({room.lastLost, LinesLost{log, std::exchange(room.lostCount, 0)}});
}

std::optional<LogNews> LogWriter::TakeNews() {
    if (!hasNews)
        return std::nullopt;
    const MutexLock lock(mutex);
    hasNews = false;
    LogNews taken = news;
    news.problems.clear();
    news.pastTransfers.reset();
    return taken;
}

std::array<std::int64_t, logKindCount> LogWriter::UnwrittenLines() {
    const MutexLock lock(mutex);
    std::array<std::int64_t, logKindCount> counts = {};
    for (std::size_t log = 0; log < logKindCount; ++log)
        counts[log] = unwritten[log].lineCount + unwritten[log].lostCount;
    return counts;
}

bool LogWriter::WaitUntilWritten(std::chrono::milliseconds longest) {
    const auto deadline = std::chrono::steady_clock::now() + longest;
    const MutexLock lock(mutex);
    isHurried = true;
    changed.NotifyAll();
    while (isDue || isWriting) {
        if (!changed.WaitUntil(mutex, deadline))
            break;
    }
    isHurried = false;
    return !isDue && !isWriting;
}

// Waits for something to do. False if the thread is to end and everything has been written.
bool LogWriter::TakeBatch(std::vector<LogRecord>& batch, Clock::TimePoint& now, Rooms& sizes) {
    const MutexLock lock(mutex);
    isAsleep = true;
    while (!isDue && !StopRequested())
        changed.Wait(mutex);
    isAsleep = false;
    const auto deadline = std::chrono::steady_clock::now() + gatheringTime;
    while (!isHurried && !StopRequested() && changed.WaitUntil(mutex, deadline))
        continue;
    for (const LogKind log : {LogKind::Comms, LogKind::Activity, LogKind::History})
        TellLost(log);
    batch.swap(waiting);
    now = handedOver;
    // The batch keeps its share of the memory until it has been written.
    sizes = unwritten;
    isWriting = isDue;
    return std::exchange(isDue, false);
}

void LogWriter::FinishBatch(LogNews latest, const Rooms& sizes) {
    const MutexLock lock(mutex);
    for (std::size_t log = 0; log < logKindCount; ++log) {
        unwritten[log].byteCount -= sizes[log].byteCount;
        unwritten[log].lineCount -= sizes[log].lineCount;
    }
    const bool isNew = !latest.problems.empty() || latest.pastTransfers || !latest.HasSameState(news);
    // What the monitor thread has not taken yet stays, the older problems in front.
    if (!latest.pastTransfers)
        latest.pastTransfers = std::move(news.pastTransfers);
    latest.problems.insert(latest.problems.begin(), std::make_move_iterator(news.problems.begin()),
                           std::make_move_iterator(news.problems.end()));
    news = std::move(latest);
    if (isNew)
        hasNews = true;
    isWriting = false;
    changed.NotifyAll();
}

int LogWriter::Body() {
    std::vector<LogRecord> batch;
    Clock::TimePoint now;
    Rooms sizes;
    while (TakeBatch(batch, now, sizes)) {
        LogNews latest = files->Write(batch, now);
        batch.clear();
        FinishBatch(std::move(latest), sizes);
    }
    return 0;
}

void LogWriter::Abandon(std::unique_ptr<LogWriter> writer) {
    // Never freed: the thread may use its object until the process ends.
    static Mutex mutex;
    static auto& abandoned = *new std::vector<std::unique_ptr<LogWriter>>;
    writer->Detach();
    const MutexLock lock(mutex);
    abandoned.push_back(std::move(writer));
}

}
