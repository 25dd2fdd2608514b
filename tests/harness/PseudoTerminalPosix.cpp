#include "harness/PseudoTerminalPosix.h"

#include <cstdlib>

#include <doctest/doctest.h>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace tarvin::test {

namespace {

// A line that echoes and edits would answer the program with its own words until the program has set it up.
void MakeRaw(const char* device) {
    const int other = ::open(device, O_RDWR | O_NOCTTY | O_CLOEXEC);
    REQUIRE(other >= 0);
    termios state = {};
    REQUIRE(::tcgetattr(other, &state) == 0);
    ::cfmakeraw(&state);
    REQUIRE(::tcsetattr(other, TCSANOW, &state) == 0);
    ::close(other);
}

}

PseudoTerminal::PseudoTerminal(Mode mode) : end(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    REQUIRE(end >= 0);
    REQUIRE(::grantpt(end) == 0);
    REQUIRE(::unlockpt(end) == 0);
    char name[64] = "";
    REQUIRE(::ptsname_r(end, name, sizeof name) == 0);
    device = name;
    if (mode == Mode::Raw)
        MakeRaw(name);
}

void PseudoTerminal::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(end, bytes.data(), bytes.size());
        REQUIRE(count > 0);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

std::string PseudoTerminal::Read(std::size_t byteCount, std::chrono::milliseconds longest) {
    const auto deadline = std::chrono::steady_clock::now() + longest;
    std::string bytes;
    while (bytes.size() < byteCount) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
        pollfd line = {end, POLLIN, 0};
        if (left <= 0 || ::poll(&line, 1, static_cast<int>(left)) <= 0)
            break;
        char chunk[4096];
        const ssize_t count = ::read(end, chunk, sizeof chunk);
        if (count > 0)
            bytes.append(chunk, static_cast<std::size_t>(count));
        else
            // Nobody has opened the other end, of which nothing but another look tells.
            ::poll(nullptr, 0, 1);
    }
    return bytes;
}

void PseudoTerminal::Close() {
    if (end >= 0)
        ::close(end);
    end = -1;
}

}
