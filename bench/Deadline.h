#pragma once
// Ends a wait for a program that does not answer, without a system call of its own in each exchange. One at a time.

#include <chrono>

namespace tarvin::bench {

class Deadline {
public:
    // From now on.
    explicit Deadline(std::chrono::seconds allowed);
    ~Deadline();
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

    // Throws once the time is over. A call that blocks is interrupted by then, and every second after that.
    static void ThrowIfPassed();
};

}
