#pragma once
// A thread with a stop flag that its body polls. Knows nothing of what the body does.

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
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
    // Blocks until the body has returned. The owner only.
    void Wait();
    // The same for so long at the most; true if the body has returned.
    bool WaitFor(std::chrono::milliseconds longest);
    // Unique in the process while fewer than 0xEFFFFFFF threads have been made. Starts at 1.
    std::uint32_t Identifier() const { return identifier; }

protected:
    // For the constructor of the most derived class, as its last step: the body may run before it returns. Whoever
    // derives stops and waits in the destructor, while the body's fields still live.
    void Start();
    bool StopRequested() const { return stopRequested; }
    virtual int Body() = 0;

private:
    const std::uint32_t identifier;
    std::atomic<bool> stopRequested = false;
    std::mutex mutex;
    std::condition_variable ended;
    bool hasEnded = false;
    std::thread thread;
};

}
