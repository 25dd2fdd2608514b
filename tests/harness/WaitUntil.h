#pragma once
// For what nothing tells of when it has come.

#include <chrono>
#include <thread>

namespace tarvin::test {

// Looks again and again until the condition holds, for 20 s at most; then false.
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
