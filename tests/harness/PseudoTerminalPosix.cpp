#include "harness/PseudoTerminalPosix.h"

#include "harness/SystemCallPosix.h"

#include <cstdlib>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace tarvin::test {

namespace {

int OpenDevice(const std::filesystem::path& device) {
    const int opened = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    RequireCall(opened >= 0, device.native());
    return opened;
}

// The settings stay after this descriptor is closed, because the controller's end stays open.
void MakeRaw(const std::filesystem::path& device) {
    const int opened = OpenDevice(device);
    termios settings = {};
    RequireCall(::tcgetattr(opened, &settings) == 0, device.native());
    ::cfmakeraw(&settings);
    RequireCall(::tcsetattr(opened, TCSANOW, &settings) == 0, device.native());
    ::close(opened);
}

void CloseDescriptor(int& descriptor) {
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
}

}

PseudoTerminal::PseudoTerminal(Mode mode) : descriptor(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    char name[128] = "";
    RequireCall(descriptor >= 0 && ::grantpt(descriptor) == 0 && ::unlockpt(descriptor) == 0 &&
                    ::ptsname_r(descriptor, name, sizeof name) == 0,
                "pseudo-terminal");
    device = name;
    // A cooked line echoes: until the program has set it up, it would send the program its own answers.
    if (mode == Mode::Raw)
        MakeRaw(device);
}

void PseudoTerminal::HoldDevice() {
    if (heldDevice < 0)
        heldDevice = OpenDevice(device);
}

void PseudoTerminal::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        RequireCall(count > 0, "write to the pseudo-terminal");
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

std::string PseudoTerminal::Read(std::size_t byteCount, std::chrono::milliseconds longest) {
    const auto deadline = std::chrono::steady_clock::now() + longest;
    std::string bytes;
    while (bytes.size() < byteCount) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
        pollfd line = {descriptor, POLLIN, 0};
        if (left <= 0 || ::poll(&line, 1, static_cast<int>(left)) <= 0)
            break;
        char chunk[4096];
        const ssize_t count = ::read(descriptor, chunk, sizeof chunk);
        if (count > 0)
            bytes.append(chunk, static_cast<std::size_t>(count));
        else
            // No program has the device open. poll() does not wait for that to change, so try again a little later.
            ::poll(nullptr, 0, 1);
    }
    return bytes;
}

void PseudoTerminal::Close() {
    CloseDescriptor(heldDevice);
    CloseDescriptor(descriptor);
}

}
