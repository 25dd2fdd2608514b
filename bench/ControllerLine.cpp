#include "ControllerLine.h"

#include "protocol/Frame.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace tarvin::bench {

namespace {

constexpr int quietMilliseconds = 50;

[[noreturn]] void Throw(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

int OpenRaw(const std::string& path) {
    const int device = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios state = {};
    if (device < 0 || ::tcgetattr(device, &state) != 0)
        Throw(path.c_str());
    ::cfmakeraw(&state);
    if (::tcsetattr(device, TCSANOW, &state) != 0)
        Throw(path.c_str());
    return device;
}

}

ControllerLine::ControllerLine() : master(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    char name[128];
    if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0 || ::ptsname_r(master, name, sizeof name) != 0)
        Throw("pseudo-terminal");
    devicePath = name;
    slave = OpenRaw(devicePath);
}

ControllerLine::~ControllerLine() {
    ::close(slave);
    ::close(master);
}

void ControllerLine::Write(std::string_view frame) {
    const ssize_t count = ::write(master, frame.data(), frame.size());
    if (count < 0)
        Throw("write to the pseudo-terminal");
    if (static_cast<std::size_t>(count) != frame.size())
        throw std::runtime_error("the program does not read its line");
}

std::string_view ControllerLine::ReadFrame() {
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
        const ssize_t count = ::read(master, buffer + end, sizeof buffer - end);
        Deadline::ThrowIfPassed();
        if (count <= 0 && errno != EINTR)
            Throw("read from the pseudo-terminal");
        end += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
}

bool ControllerLine::WaitForInput(int milliseconds) {
    Deadline::ThrowIfPassed();
    pollfd input = {master, POLLIN, 0};
    return first < end || ::poll(&input, 1, milliseconds) > 0;
}

void ControllerLine::DropInput() {
    while (WaitForInput(quietMilliseconds))
        ReadFrame();
}

}
