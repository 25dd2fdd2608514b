#pragma once
// A mutex, its lock and its condition, with annotations by which Clang's -Wthread-safety finds a guarded field that is
// used without its lock.

#include <chrono>
#include <condition_variable>
#include <mutex>

#if defined(__clang__)
#define TARVIN_THREAD_ANNOTATION(x) __attribute__((x))
#else
#define TARVIN_THREAD_ANNOTATION(x)
#endif

// A field that may only be used while the mutex is held.
#define GUARDED_BY(mutex) TARVIN_THREAD_ANNOTATION(guarded_by(mutex))
// An operation whose caller holds the mutex, and one whose caller does not.
#define REQUIRES(mutex) TARVIN_THREAD_ANNOTATION(requires_capability(mutex))
#define EXCLUDES(mutex) TARVIN_THREAD_ANNOTATION(locks_excluded(mutex))

namespace tarvin {

class TARVIN_THREAD_ANNOTATION(capability("mutex")) Mutex {
public:
    Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    // Lower case: the names that std::condition_variable_any calls.
    void lock() TARVIN_THREAD_ANNOTATION(acquire_capability()) { mutex.lock(); }
    void unlock() TARVIN_THREAD_ANNOTATION(release_capability()) { mutex.unlock(); }

private:
    std::mutex mutex;
};

// Holds the mutex for as long as it lives.
class TARVIN_THREAD_ANNOTATION(scoped_lockable) MutexLock {
public:
    explicit MutexLock(Mutex& newMutex) TARVIN_THREAD_ANNOTATION(acquire_capability(newMutex)) : mutex(newMutex) {
        mutex.lock();
    }
    ~MutexLock() TARVIN_THREAD_ANNOTATION(release_capability()) { mutex.unlock(); }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

private:
    Mutex& mutex;
};

// A wait may end early: the caller looks at its condition in a loop.
class Condition {
public:
    void NotifyAll() { condition.notify_all(); }
    void Wait(Mutex& mutex) REQUIRES(mutex) { condition.wait(mutex); }
    // False once `deadline` has passed.
    bool WaitUntil(Mutex& mutex, std::chrono::steady_clock::time_point deadline) REQUIRES(mutex) {
        return condition.wait_until(mutex, deadline) == std::cv_status::no_timeout;
    }

private:
    std::condition_variable_any condition;
};

}
