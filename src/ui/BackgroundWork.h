#pragma once
// Work that may hang on a slow or lost drive, on a thread of its own. The user-interface thread asks whether it is
// done, and may forget it at any time: the thread then ends by itself and its result is dropped.

#include "base/Mutex.h"

#include <cassert>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

namespace tarvin {

template <class Outcome>
class BackgroundWork {
public:
    // Starts the work, which must own all that it uses. Requires that none is running.
    void Start(std::function<Outcome()> work) {
        assert(!IsRunning());
        shared = std::make_shared<Shared>();
        std::thread([kept = shared, work = std::move(work)] {
            Outcome outcome = work();
            const MutexLock lock(kept->mutex);
            kept->outcome.emplace(std::move(outcome));
        }).detach();
    }

    // Until Take has given the outcome.
    bool IsRunning() const { return shared != nullptr; }

    // The outcome, once it is there.
    std::optional<Outcome> Take() {
        if (!shared)
            return std::nullopt;
        std::optional<Outcome> taken;
        {
            const MutexLock lock(shared->mutex);
            taken = std::exchange(shared->outcome, std::nullopt);
        }
        if (taken)
            shared.reset();
        return taken;
    }

private:
    struct Shared {
        Mutex mutex;
        std::optional<Outcome> outcome GUARDED_BY(mutex);
    };

    std::shared_ptr<Shared> shared;
};

}
