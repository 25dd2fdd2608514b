#pragma once
// A file descriptor that is closed with its owner. One thread at a time uses it.

#include <utility>

#include <unistd.h>

namespace tarvin {

class Descriptor {
public:
    // A negative number is a descriptor that could not be opened.
    explicit Descriptor(int number) : number(number) {}
    ~Descriptor() {
        if (number >= 0)
            ::close(number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Number() const { return number; }
    // Hands the descriptor over to the caller, who closes it.
    int Release() { return std::exchange(number, -1); }

private:
    int number;
};

}
