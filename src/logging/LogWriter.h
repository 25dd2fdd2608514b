#pragma once
// Writes the logs on a thread of its own: a disk that is slow, full of other work or no longer there delays no answer
// to the controller. The thread sleeps until records come.

#include "base/wThread.h"
#include "logging/LogFiles.h"

#include <array>
#include <atomic>
#include <memory>

namespace tarvin {

class LogWriter : public wThread {
public:
    // The memory for lines of one log that wait for the disk, in bytes.
    static constexpr std::size_t longestWaiting = 4 * 1024 * 1024;

    // Starts the thread, which alone uses `files` from now on.
    explicit LogWriter(std::unique_ptr<LogFiles> files);
    // Blocks until all records are written. For a disk that hangs see Abandon.
    ~LogWriter() override;

    // Takes the records out of `records`. Never waits for the disk: lines for which there is no room are dropped, and
    // one line of the log counts them. `now` is not before the last of the records. With no records it lets a failed
    // log try again.
    void HandOver(std::vector<LogRecord>& records, Clock::TimePoint now) EXCLUDES(mutex);

    // What has happened since the last call. None if nothing has.
    std::optional<LogNews> TakeNews() EXCLUDES(mutex);

    // The lines that have been handed over and are not yet written, for each LogKind.
    std::array<std::int64_t, logKindCount> UnwrittenLines() EXCLUDES(mutex);

    // Blocks until everything that was handed over has been written, or for `longest`. True if it has been written.
    bool WaitUntilWritten(std::chrono::milliseconds longest) EXCLUDES(mutex);

    // Makes the thread end when everything has been written. WaitFor tells when it has.
    void Stop() override EXCLUDES(mutex);

    // Gives up a thread that hangs in a system call, which nothing can end. It goes on alone, and writes its records if
    // the disk comes back before the process ends.
    static void Abandon(std::unique_ptr<LogWriter> writer);

private:
    // The share of one log in the memory of the queue.
    struct Room {
        std::size_t byteCount = 0;
        std::int64_t lineCount = 0;
        std::int64_t lostCount = 0; // lines dropped, not yet told
        Clock::TimePoint lastLost;
    };
    using Rooms = std::array<Room, logKindCount>;

    int Body() override;
    bool TakeBatch(std::vector<LogRecord>& batch, Clock::TimePoint& now, Rooms& sizes) EXCLUDES(mutex);
    void FinishBatch(LogNews news, const Rooms& sizes) EXCLUDES(mutex);
    void TellLost(LogKind log) REQUIRES(mutex);

    const std::unique_ptr<LogFiles> files;
    Mutex mutex;
    Condition changed;
    std::vector<LogRecord> waiting GUARDED_BY(mutex);
    Clock::TimePoint handedOver GUARDED_BY(mutex);
    bool isDue GUARDED_BY(mutex) = false;     // the thread has something to do
    bool isAsleep GUARDED_BY(mutex) = false;  // the thread waits for that
    bool isWriting GUARDED_BY(mutex) = false; // the thread writes a batch
    bool isHurried GUARDED_BY(mutex) = false; // a caller waits for the thread
    Rooms unwritten GUARDED_BY(mutex);        // waiting, and in the batch
    LogNews news GUARDED_BY(mutex);
    // Lets TakeNews return without the mutex, as it does in nearly every pass.
    std::atomic<bool> hasNews = false;
};

}
