#pragma once
// Work that may hang on a slow or lost drive or device, on a thread of its own. User-interface thread.

#include "base/Mutex.h"
#include "ui/Wx.h"

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <utility>

namespace tarvin {

template <class Outcome>
class BackgroundWork {
public:
    // Gets true once the outcome is no longer wanted. The work may then end early.
    using Stop = const std::atomic<bool>&;

    BackgroundWork() = default;
    ~BackgroundWork() { Forget(); }
    BackgroundWork(const BackgroundWork&) = delete;
    BackgroundWork& operator=(const BackgroundWork&) = delete;

    // Starts the work, which must own all that it uses, and calls `then` with its outcome, by an event of the window.
    // Forgets work that is running.
    void Start(std::function<Outcome(Stop)> work, std::function<void(Outcome)> then) {
        Forget();
        shared = std::make_shared<Shared>();
        shared->then = std::move(then);
        std::thread([this, kept = shared, app = wxTheApp, work = std::move(work)] {
            const auto outcome = std::make_shared<Outcome>(work(kept->isForgotten));
            // Forget waits meanwhile, and the application outlives its windows.
            const MutexLock lock(kept->mutex);
            if (!kept->isForgotten)
                app->CallAfter([this, kept, outcome] {
                    // Forgotten since: then this object may be gone.
                    if (kept->isForgotten)
                        return;
                    shared.reset();
                    kept->then(std::move(*outcome));
                });
        }).detach();
    }

    // Until `then` is called or the work is forgotten.
    bool IsRunning() const { return shared != nullptr; }

    // The thread ends by itself, and its outcome is dropped.
    void Forget() {
        if (const auto forgotten = std::exchange(shared, nullptr)) {
            const MutexLock lock(forgotten->mutex);
            forgotten->isForgotten = true;
        }
    }

private:
    struct Shared {
        Mutex mutex;
        std::atomic<bool> isForgotten = false; // set under the mutex
        std::function<void(Outcome)> then;     // user-interface thread
    };

    std::shared_ptr<Shared> shared;
};

}
