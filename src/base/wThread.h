#pragma once
// A thread with a stop flag that its body polls. Derived classes supply the body.

#include "base/Mutex.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

namespace tarvin {

class wThread {
public:
    wThread();
    virtual ~wThread() { Wait(); }
    wThread(const wThread&) = delete;
    wThread& operator=(const wThread&) = delete;

    // Asks the body to return. Any thread.
    virtual void Stop() { stopRequested = true; }
    // Blocks until the body has returned. Only the thread that owns this object calls it.
    void Wait();
    // Blocks until the body has returned, or for `longest`. True if the body has returned.
    bool WaitFor(std::chrono::milliseconds longest);
    // Lets the body run on without being waited for: one that hangs in a system call cannot be ended. The object must
    // then exist until the process ends. Only the thread that owns this object calls it.
    void Detach();
    // 1 for the first thread of the process. Unique until 0xEFFFFFFF threads have been made.
    std::uint32_t Identifier() const { return identifier; }

protected:
    // The most derived constructor calls this as its last step, once: the body may run before Start returns. Each
    // derived class calls Stop and Wait in its destructor, while the fields that the body uses still exist.
    void Start();
    bool StopRequested() const { return stopRequested; }
    virtual int Body() = 0;

private:
    const std::uint32_t identifier;
    std::atomic<bool> stopRequested = false;
    Mutex mutex;
    Condition ended;
    bool hasEnded GUARDED_BY(mutex) = false;
    std::thread thread;
};

}
