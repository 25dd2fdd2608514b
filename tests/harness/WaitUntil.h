#pragma once
// Waiting for a condition that announces nothing when it comes true.

#include <chrono>
#include <thread>

namespace tarvin::test {

// Looks every millisecond until the condition holds. False if it does not hold within 20 s.
template <typename Condition>
bool WaitUntil(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

}
