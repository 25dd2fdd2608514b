#pragma once
// A mutex, its lock and its condition, annotated for Clang: -Wthread-safety reports each use of a guarded field without
// its lock.

#include <chrono>
#include <condition_variable>
#include <mutex>

#if defined(__clang__)
#define TARVIN_THREAD_ANNOTATION(x) __attribute__((x))
#else
#define TARVIN_THREAD_ANNOTATION(x)
#endif

// Marks a field that a thread uses only while it holds the mutex.
#define GUARDED_BY(mutex) TARVIN_THREAD_ANNOTATION(guarded_by(mutex))
// Marks an operation whose caller holds the mutex.
#define REQUIRES(mutex) TARVIN_THREAD_ANNOTATION(requires_capability(mutex))
// Marks an operation whose caller must not hold the mutex.
#define EXCLUDES(mutex) TARVIN_THREAD_ANNOTATION(locks_excluded(mutex))

namespace tarvin {

class TARVIN_THREAD_ANNOTATION(capability("mutex")) Mutex {
public:
    Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    // Lower case: std::condition_variable_any calls these names.
    void lock() TARVIN_THREAD_ANNOTATION(acquire_capability()) { mutex.lock(); }
    void unlock() TARVIN_THREAD_ANNOTATION(release_capability()) { mutex.unlock(); }

private:
    std::mutex mutex;
};

// Locks the mutex, and unlocks it in the destructor.
class TARVIN_THREAD_ANNOTATION(scoped_lockable) MutexLock {
public:
    explicit MutexLock(Mutex& mutex) TARVIN_THREAD_ANNOTATION(acquire_capability(mutex)) : mutex(mutex) {
        mutex.lock();
    }
    ~MutexLock() TARVIN_THREAD_ANNOTATION(release_capability()) { mutex.unlock(); }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

private:
    Mutex& mutex;
};

// Lets threads wait for a change of what the mutex guards. A wait may return early, so the caller tests the guarded
// fields in a loop.
class Condition {
public:
    void NotifyAll() { condition.notify_all(); }
    // Releases the mutex while it waits.
    void Wait(Mutex& mutex) REQUIRES(mutex) { condition.wait(mutex); }
    // Like Wait, until `deadline` at the latest. False once the deadline has passed.
    bool WaitUntil(Mutex& mutex, std::chrono::steady_clock::time_point deadline) REQUIRES(mutex) {
        return condition.wait_until(mutex, deadline) == std::cv_status::no_timeout;
    }

private:
    std::condition_variable_any condition;
};

}
