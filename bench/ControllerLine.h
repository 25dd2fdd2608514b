#pragma once
// The controller's end of the line: the master side of a pseudo-terminal, raw and blocking, whose slave side is the
// device that the measured program opens. Knows frames, and nothing of what they say. All failures are thrown.

#include "Deadline.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tarvin::bench {

class ControllerLine {
public:
    ControllerLine();
    ~ControllerLine();
    ControllerLine(const ControllerLine&) = delete;
    ControllerLine& operator=(const ControllerLine&) = delete;

    const std::string& DevicePath() const { return devicePath; }

    // One frame in one write.
    void Write(std::string_view frame);

    // The next frame, with the carriage return that ends it; valid until the next call. Waits for as long as it takes:
    // a Deadline ends the wait.
    std::string_view ReadFrame();

    // Whether there is something to read, at once or before `milliseconds` have passed.
    bool WaitForInput(int milliseconds);

    // Reads the frames that arrive until the line has been quiet for a while.
    void DropInput();

private:
    int master = -1;
    int slave = -1; // kept open, so that the line lives on between two programs at its other end
    std::string devicePath;
    char buffer[4096];
    std::size_t first = 0;
    std::size_t end = 0;
};

}
