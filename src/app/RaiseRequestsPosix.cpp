#include "app/RaiseRequests.h"

#include <cassert>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string>
#include <thread>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tarvin {

namespace {

constexpr char raisedByte = 'R';

class Descriptor {
public:
    explicit Descriptor(int number) : number(number) {}
    ~Descriptor() {
        if (number >= 0)
            ::close(number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Number() const { return number; }

private:
    const int number;
};

int NewSocket() {
    return ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

bool MayAsk(int connection) {
    ucred peer = {};
    socklen_t length = sizeof peer;
    if (::getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &peer, &length) != 0)
        return false;
    return peer.uid == ::geteuid() || peer.uid == 0;
}

}

struct RaiseRequests::Endpoint {
    Endpoint() : listener(NewSocket()), stop(::eventfd(0, EFD_CLOEXEC)) {}

    // The name that the system has chosen; empty after a failure.
    std::string Bind() const {
        sockaddr_un name = {};
        name.sun_family = AF_UNIX;
        // An address that holds the family alone makes the system choose a free abstract name.
        const bool isBound =
            ::bind(listener.Number(), reinterpret_cast<const sockaddr*>(&name), sizeof name.sun_family) == 0 &&
            ::listen(listener.Number(), 8) == 0;
        socklen_t length = sizeof name;
        if (!isBound || ::getsockname(listener.Number(), reinterpret_cast<sockaddr*>(&name), &length) != 0)
            return {};
        // Such a name begins with a zero byte.
        constexpr std::size_t start = offsetof(sockaddr_un, sun_path) + 1;
        return length > start ? std::string(name.sun_path + 1, length - start) : std::string();
    }

    void Run(const std::function<void(Answer)>& raise) const {
        pollfd watched[] = {{listener.Number(), POLLIN, 0}, {stop.Number(), POLLIN, 0}};
        for (;;) {
            if (::poll(watched, std::size(watched), -1) < 0 && errno != EINTR)
                return;
            if (watched[1].revents != 0)
                return;
            const auto connection =
                std::make_shared<Descriptor>(::accept4(listener.Number(), nullptr, nullptr, SOCK_CLOEXEC));
            if (connection->Number() < 0 || !MayAsk(connection->Number()))
                continue;
            raise([connection] { (void)!::send(connection->Number(), &raisedByte, 1, MSG_NOSIGNAL | MSG_DONTWAIT); });
        }
    }

    const Descriptor listener;
    const Descriptor stop;
    std::thread thread;
};

RaiseRequests::RaiseRequests() : endpoint(std::make_unique<Endpoint>()) {
    address = FromUtf8(endpoint->Bind());
    if (address.empty())
        endpoint.reset();
}

RaiseRequests::~RaiseRequests() {
    if (!endpoint || !endpoint->thread.joinable())
        return;
    const std::uint64_t one = 1;
    (void)!::write(endpoint->stop.Number(), &one, sizeof one);
    endpoint->thread.join();
}

void RaiseRequests::Serve(std::function<void(Answer)> raise) {
    if (!endpoint)
        return;
    assert(!endpoint->thread.joinable());
    endpoint->thread = std::thread([this, kept = std::move(raise)] { endpoint->Run(kept); });
}

RaiseOutcome RequestRaise(const KelText& address, std::chrono::milliseconds patience) {
    const std::string bytes = ToUtf8(address);
    sockaddr_un name = {};
    name.sun_family = AF_UNIX;
    if (bytes.empty() || bytes.size() >= sizeof name.sun_path)
        return RaiseOutcome::Gone;
    bytes.copy(name.sun_path + 1, bytes.size());
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + bytes.size());
    const Descriptor connection(NewSocket());
    if (::connect(connection.Number(), reinterpret_cast<const sockaddr*>(&name), length) != 0)
        // A window that takes no requests for long has a full queue of them.
        return errno == EAGAIN ? RaiseOutcome::Silent : RaiseOutcome::Gone;
    pollfd watched = {connection.Number(), POLLIN, 0};
    if (::poll(&watched, 1, static_cast<int>(patience.count())) <= 0)
        return RaiseOutcome::Silent;
    char answer = 0;
    return ::recv(connection.Number(), &answer, 1, 0) == 1 && answer == raisedByte ? RaiseOutcome::Raised
                                                                                   : RaiseOutcome::Gone;
}

}
