#include "drivers/FarEndPosix.h"

#include "harness/SystemCallPosix.h"

#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace tarvin::test {

using namespace std::chrono_literals;

FarEnd::FarEnd(std::filesystem::path path) : path(std::move(path)) {
    Open();
}

FarEnd::~FarEnd() {
    ::close(device);
}

void FarEnd::Open() {
    if (device >= 0)
        ::close(device);
    device = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    RequireCall(device >= 0, path.native());
    termios settings = {};
    if (::tcgetattr(device, &settings) != 0)
        return;
    ::cfmakeraw(&settings);
    settings.c_cflag |= CLOCAL | CREAD;
    RequireCall(::tcsetattr(device, TCSANOW, &settings) == 0, path.native());
}

void FarEnd::Write(std::string_view bytes) {
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (!bytes.empty()) {
        const ssize_t count = ::write(device, bytes.data(), bytes.size());
        if (count > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
            continue;
        }
        if (errno == EIO)
            Open();
        else
            RequireCall(errno == EAGAIN && std::chrono::steady_clock::now() < deadline, path.native());
        ::poll(nullptr, 0, 1);
    }
}

std::string FarEnd::Read(std::size_t byteCount, std::chrono::milliseconds longest) {
    const auto deadline = std::chrono::steady_clock::now() + longest;
    std::string bytes;
    for (;;) {
        char chunk[4096];
        const ssize_t count = ::read(device, chunk, sizeof chunk);
        if (count > 0) {
            bytes.append(chunk, static_cast<std::size_t>(count));
            continue;
        }
        // A terminal that was hung up gives 0 or EIO until it is opened again.
        if (count == 0 || errno == EIO)
            Open();
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (bytes.size() >= byteCount || left <= 0ms)
            return bytes;
        pollfd line = {device, POLLIN, 0};
        ::poll(&line, 1, static_cast<int>(std::min<std::chrono::milliseconds>(left, 100ms).count()));
    }
}

}
