#include "base/DescriptorPosix.h"
#include "files/ProgramRequests.h"

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

// What goes over the connection for each answer.
constexpr char doneByte = 'D';
constexpr char laterByte = 'L';
constexpr char refusedByte = 'R';

char ByteFor(RequestAnswer answer) {
    switch (answer) {
    case RequestAnswer::Done:
        return doneByte;
    case RequestAnswer::Later:
        return laterByte;
    case RequestAnswer::Refused:
        break;
    }
    return refusedByte;
}

RequestOutcome OutcomeOf(char byte) {
    switch (byte) {
    case doneByte:
        return RequestOutcome::Done;
    case laterByte:
        return RequestOutcome::Later;
    case refusedByte:
        return RequestOutcome::Refused;
    default:
        return RequestOutcome::Gone;
    }
}

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

struct ProgramRequests::Endpoint {
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

    void Run(const std::function<void(Answer)>& take) const {
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
            take([connection](RequestAnswer answer) {
                const char byte = ByteFor(answer);
                (void)!::send(connection->Number(), &byte, 1, MSG_NOSIGNAL | MSG_DONTWAIT);
            });
        }
    }

    const Descriptor listener;
    const Descriptor stop;
    std::thread thread;
};

ProgramRequests::ProgramRequests(RequestKind /*kind*/) : endpoint(std::make_unique<Endpoint>()) {
    address = FromUtf8(endpoint->Bind());
    if (address.empty())
        endpoint.reset();
}

ProgramRequests::~ProgramRequests() {
    End();
}

void ProgramRequests::End() {
    if (endpoint && endpoint->thread.joinable()) {
        const std::uint64_t one = 1;
        (void)!::write(endpoint->stop.Number(), &one, sizeof one);
        endpoint->thread.join();
    }
    endpoint.reset();
}

void ProgramRequests::Serve(std::function<void(Answer)> take) {
    if (!endpoint)
        return;
    assert(!endpoint->thread.joinable());
    endpoint->thread = std::thread([this, kept = std::move(take)] { endpoint->Run(kept); });
}

// Each kind has a socket of its own, so nothing is sent with a request.
RequestOutcome RequestFrom(RequestKind /*kind*/, const KelText& address, std::chrono::milliseconds patience) {
    const std::string bytes = ToUtf8(address);
    sockaddr_un name = {};
    name.sun_family = AF_UNIX;
    if (bytes.empty() || bytes.size() >= sizeof name.sun_path)
        return RequestOutcome::Gone;
    bytes.copy(name.sun_path + 1, bytes.size());
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + bytes.size());
    const Descriptor connection(NewSocket());
    if (::connect(connection.Number(), reinterpret_cast<const sockaddr*>(&name), length) != 0)
        // A program that takes no requests for long has a full queue of them.
        return errno == EAGAIN ? RequestOutcome::Silent : RequestOutcome::Gone;
    pollfd watched = {connection.Number(), POLLIN, 0};
    if (::poll(&watched, 1, static_cast<int>(patience.count())) <= 0)
        return RequestOutcome::Silent;
    char answer = 0;
    return ::recv(connection.Number(), &answer, 1, 0) == 1 ? OutcomeOf(answer) : RequestOutcome::Gone;
}

}
