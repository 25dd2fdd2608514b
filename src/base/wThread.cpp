#include "base/wThread.h"

#include <cassert>

namespace tarvin {

namespace {

// Threads may be made on several threads at once, so the step from the highest number back to 1 is an atomic exchange.
std::uint32_t NextIdentifier() {
    static std::atomic<std::uint32_t> last = 0;
    std::uint32_t previous = last;
    std::uint32_t next = 0;
    do {
        next = previous >= 0xEFFFFFFF ? 1 : previous + 1;
    } while (!last.compare_exchange_weak(previous, next));
    return next;
}

}

wThread::wThread() : identifier(NextIdentifier()) {}

void wThread::Start() {
    assert(!thread.joinable());
    thread = std::thread([this] {
        Body();
        const MutexLock lock(mutex);
        hasEnded = true;
        // Under the lock: once it is released, the owner may destroy this object.
        ended.NotifyAll();
    });
}

bool wThread::WaitFor(std::chrono::milliseconds longest) {
    const auto deadline = std::chrono::steady_clock::now() + longest;
    const MutexLock lock(mutex);
    while (!hasEnded) {
        if (!ended.WaitUntil(mutex, deadline))
            return hasEnded;
    }
    return true;
}

void wThread::Detach() {
    assert(thread.joinable());
    thread.detach();
}

void wThread::Wait() {
    if (thread.joinable())
        thread.join();
}

}
