#include "app/ServiceNotify.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>
#include <time.h>
#include <unistd.h>

namespace tarvin {

namespace {

// The value of the variable. Takes it out of the environment, so that no child process speaks for this one.
std::string TakeVariable(const char* name) {
    const char* const value = std::getenv(name);
    const std::string taken = value == nullptr ? "" : value;
    ::unsetenv(name);
    return taken;
}

std::optional<std::int64_t> Number(const std::string& text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

// The clock that systemd compares a reload's begin with.
std::string MonotonicMicroseconds() {
    timespec now = {};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return std::to_string(now.tv_sec * 1'000'000 + now.tv_nsec / 1000);
}

}

ServiceNotify::ServiceNotify() : address(TakeVariable("NOTIFY_SOCKET")) {
    const auto period = Number(TakeVariable("WATCHDOG_USEC"));
    const auto watched = Number(TakeVariable("WATCHDOG_PID"));
    // A path, or a name of the abstract namespace. Linux has other kinds too, for virtual machines.
    if (address.empty() || (address[0] != '/' && address[0] != '@') ||
        address.size() >= sizeof(sockaddr_un::sun_path)) {
        address.clear();
        return;
    }
    socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (period && *period > 1 && (!watched || *watched == ::getpid()))
        alivePeriod = std::chrono::microseconds(*period / 2);
}

ServiceNotify::~ServiceNotify() {
    if (socket >= 0)
        ::close(socket);
}

// A full queue of the manager loses the message: the line does not wait for it. The next Alive or status follows.
void ServiceNotify::Send(std::string_view message) {
    if (socket < 0)
        return;
    sockaddr_un target = {};
    target.sun_family = AF_UNIX;
    std::copy(address.begin(), address.end(), target.sun_path);
    if (address[0] == '@')
        target.sun_path[0] = '\0';
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + address.size());
    (void)!::sendto(socket, message.data(), message.size(), MSG_DONTWAIT | MSG_NOSIGNAL,
                    reinterpret_cast<const sockaddr*>(&target), length);
}

void ServiceNotify::Ready() {
    Send("READY=1");
}

void ServiceNotify::Reloading() {
    Send("RELOADING=1\nMONOTONIC_USEC=" + MonotonicMicroseconds());
}

void ServiceNotify::Stopping() {
    Send("STOPPING=1");
}

void ServiceNotify::Status(KelTextView line) {
    std::string text = ToUtf8(line);
    // A line end would begin another field of the message.
    std::replace_if(
        text.begin(), text.end(), [](char unit) { return unit >= 0 && unit < ' '; }, ' ');
    Send("STATUS=" + text);
}

void ServiceNotify::Alive() {
    Send("WATCHDOG=1");
}

}
