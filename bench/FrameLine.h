#pragma once
// The controller's end of a line: a raw, blocking pseudo-terminal whose device the measured program opens. Cuts the
// received bytes into frames. Adds one system call to each read and write and nothing else, because its time is part of
// every turnaround. Failures throw.

#include "Deadline.h"
#include "harness/PseudoTerminalPosix.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tarvin::bench {

class FrameLine {
public:
    // Keeps the device open, so that the line survives between two programs that use it.
    FrameLine() { terminal.HoldDevice(); }

    std::string DevicePath() const { return terminal.Device(); }

    // Writes one frame in one call.
    void Write(std::string_view frame);

    // Blocks until a frame has arrived, or a Deadline has passed. The frame ends with its carriage return and stays
    // valid until the next call.
    std::string_view ReadFrame();

    // True if bytes wait, or arrive within `milliseconds`.
    bool WaitForInput(int milliseconds);

    // Reads and drops frames until none has arrived for 50 ms.
    void DropInput();

private:
    test::PseudoTerminal terminal;
    char buffer[4096];
    std::size_t first = 0; // of the received bytes that ReadFrame has not returned yet
    std::size_t end = 0;
};

}
