#pragma once
// Asserts that what belongs to one thread is used by that thread alone. Costs nothing in release builds.

#include <cassert>
#include <thread>

namespace tarvin {

// The owner is the thread that calls AssertOwned first.
class ThreadOwner {
public:
    ThreadOwner() = default;
    ThreadOwner(const ThreadOwner&) = delete;
    ThreadOwner& operator=(const ThreadOwner&) = delete;

#ifdef NDEBUG
    void AssertOwned() const {}
    void Release() const {}
#else
    void AssertOwned() const {
        if (owner == std::thread::id())
            owner = std::this_thread::get_id();
        assert(owner == std::this_thread::get_id());
    }
    // Lets the next thread that calls AssertOwned take over. The caller makes sure that this thread has ended or is
    // done with the object.
    void Release() const {
        owner = std::thread::id();
    }

private:
    mutable std::thread::id owner;
#endif
};

}
