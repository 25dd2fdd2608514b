#pragma once
// Asserts that one thread alone uses an object. Does nothing in release builds.

#include <cassert>
#include <thread>

namespace tarvin {

// The first thread that calls AssertOwned becomes the owner.
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
    // Makes the next thread that calls AssertOwned the owner. The caller makes sure that the present owner has ended or
    // no longer uses the object.
    void Release() const {
        owner = std::thread::id();
    }

private:
    mutable std::thread::id owner;
#endif
};

}
