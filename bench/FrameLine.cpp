#include "FrameLine.h"

#include "harness/SystemCallPosix.h"
#include "protocol/Frame.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include <poll.h>
#include <unistd.h>

namespace tarvin::bench {

namespace {

constexpr int quietMilliseconds = 50;

}

void FrameLine::Write(std::string_view frame) {
    const ssize_t count = ::write(terminal.Descriptor(), frame.data(), frame.size());
    test::RequireCall(count >= 0, "write to the pseudo-terminal");
    // A pseudo-terminal takes less than a whole frame only when its buffer is full.
    if (static_cast<std::size_t>(count) != frame.size())
        throw std::runtime_error("the program does not read its line");
}

std::string_view FrameLine::ReadFrame() {
    for (std::size_t searched = first;;) {
        if (const void* found = std::memchr(buffer + searched, frameEnd, end - searched)) {
            const char* start = buffer + first;
            first = static_cast<std::size_t>(static_cast<const char*>(found) - buffer) + 1;
            return {start, buffer + first};
        }
        std::memmove(buffer, buffer + first, end - first);
        end -= first;
        first = 0;
        searched = end;
        if (end == sizeof buffer)
            throw std::runtime_error("the program sent a frame without an end");
        const ssize_t count = ::read(terminal.Descriptor(), buffer + end, sizeof buffer - end);
        Deadline::ThrowIfPassed();
        test::RequireCall(count > 0 || errno == EINTR, "read from the pseudo-terminal");
        end += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
}

bool FrameLine::WaitForInput(int milliseconds) {
    Deadline::ThrowIfPassed();
    pollfd input = {terminal.Descriptor(), POLLIN, 0};
    return first < end || ::poll(&input, 1, milliseconds) > 0;
}

void FrameLine::DropInput() {
    while (WaitForInput(quietMilliseconds))
        ReadFrame();
}

}
