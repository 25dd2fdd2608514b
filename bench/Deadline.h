#pragma once
// Ends a wait for a program that does not answer. It adds no system call to an exchange, because an alarm interrupts
// the call that blocks. One deadline at a time.

#include <chrono>

namespace tarvin::bench {

class Deadline {
public:
    // The time runs from now on.
    explicit Deadline(std::chrono::seconds allowed);
    ~Deadline();
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

    // Throws once the time is over. At that moment, and every second after it, a call that blocks is interrupted.
    static void ThrowIfPassed();
};

}
