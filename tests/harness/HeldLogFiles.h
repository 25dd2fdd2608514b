#pragma once
// Log files on a disk that takes nothing until a test releases it.

#include "base/Mutex.h"
#include "logging/LogFiles.h"

#include <chrono>
#include <memory>
#include <utility>

namespace tarvin::test {

// The disk. Held at first. Any thread.
class HeldDisk {
public:
    // Lets all waiting and later batches through.
    void Release() EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        isHeld = false;
        changed.NotifyAll();
    }
    // Lets one batch through.
    void ReleaseOne() EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        ++permittedCount;
        changed.NotifyAll();
    }
    // Blocks until the batch may pass. Goes on after 20 s, so that a test in which the wrong thread waits here ends.
    void Pass() EXCLUDES(mutex) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        const MutexLock lock(mutex);
        ++waitingCount;
        while (isHeld && permittedCount == 0 && changed.WaitUntil(mutex, deadline))
            continue;
        if (permittedCount > 0)
            --permittedCount;
        --waitingCount;
    }
    // Whether a thread waits for the disk.
    bool IsAwaited() EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        return waitingCount > 0;
    }

private:
    Mutex mutex;
    Condition changed;
    bool isHeld GUARDED_BY(mutex) = true;
    int permittedCount GUARDED_BY(mutex) = 0;
    int waitingCount GUARDED_BY(mutex) = 0;
};

class HeldLogFiles : public LogFiles {
public:
    // Shares the disk, because a writer that was given up may use it longer than the test.
    explicit HeldLogFiles(std::shared_ptr<HeldDisk> disk, std::unique_ptr<TransferHistory> history = nullptr)
        : LogFiles(std::move(history)), disk(std::move(disk)) {}

    LogNews Write(const std::vector<LogRecord>& records, Clock::TimePoint now) override {
        disk->Pass();
        return LogFiles::Write(records, now);
    }

private:
    const std::shared_ptr<HeldDisk> disk;
};

}
