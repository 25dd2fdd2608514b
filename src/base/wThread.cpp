#include "base/wThread.h"

namespace tarvin {

namespace {

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
    thread = std::thread([this] {
        Body();
        const std::lock_guard lock(mutex);
        hasEnded = true;
        ended.notify_all();
    });
}

bool wThread::WaitFor(std::chrono::milliseconds longest) {
    std::unique_lock lock(mutex);
    return ended.wait_for(lock, longest, [this] { return hasEnded; });
}

void wThread::Wait() {
    if (thread.joinable())
        thread.join();
}

}
