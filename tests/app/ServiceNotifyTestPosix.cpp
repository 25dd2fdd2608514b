#include "app/ServiceNotify.h"
#include "harness/SystemCallPosix.h"
#include "harness/TemporaryFolder.h"

#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include <doctest/doctest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace tarvin;
using tarvin::test::RequireCall;
using tarvin::test::TemporaryFolder;
using namespace std::chrono_literals;

namespace {

// The manager's end, and the environment that it gives to a service.
class Manager {
public:
    explicit Manager(const std::string& watchdogMicroseconds = {}, const std::string& watchedProcess = {}) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        const std::string path = (folder / "notify").string();
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        RequireCall(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0, "bind");
        ::setenv("NOTIFY_SOCKET", path.c_str(), 1);
        ::setenv("WATCHDOG_USEC", watchdogMicroseconds.c_str(), 1);
        ::setenv("WATCHDOG_PID", watchedProcess.c_str(), 1);
    }
    ~Manager() { ::close(socket); }

    // A message that is there; empty without one.
    std::string Heard() const {
        char text[512] = "";
        const ssize_t count = ::recv(socket, text, sizeof text, MSG_DONTWAIT);
        return count < 0 ? std::string() : std::string(text, static_cast<std::size_t>(count));
    }

private:
    const TemporaryFolder folder;
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

}

TEST_CASE("ServiceNotify: the manager hears each state, and a status is one line of its message") {
    const Manager manager;
    ServiceNotify notify;
    // A program that this one starts must not speak for it.
    CHECK(std::getenv("NOTIFY_SOCKET") == nullptr);
    notify.Ready();
    CHECK(manager.Heard() == "READY=1");
    notify.Status(u"Waiting...\nREADY=1 \u00e4");
    CHECK(manager.Heard() == "STATUS=Waiting... READY=1 \xc3\xa4");
    notify.Reloading();
    CHECK(manager.Heard().starts_with("RELOADING=1\nMONOTONIC_USEC="));
    notify.Stopping();
    CHECK(manager.Heard() == "STOPPING=1");
}

TEST_CASE("ServiceNotify: the period is half of the manager's, for the process that it watches") {
    struct Case {
        const char* microseconds;
        std::string process;
        std::optional<std::chrono::microseconds> period;
    };
    for (const Case& expected : {Case{"60000000", std::to_string(::getpid()), 30s}, Case{"60000000", "", 30s},
                                 Case{"60000000", "1", std::nullopt}, Case{"", "", std::nullopt},
                                 Case{"a minute", "", std::nullopt}, Case{"0", "", std::nullopt}}) {
        CAPTURE(expected.microseconds);
        const Manager manager(expected.microseconds, expected.process);
        CHECK(ServiceNotify().AlivePeriod() == expected.period);
    }
}

TEST_CASE("ServiceNotify: without a manager, with one that has gone, and with one that does not read nothing waits or "
          "fails") {
    ::unsetenv("NOTIFY_SOCKET");
    ServiceNotify().Ready();
    ::setenv("NOTIFY_SOCKET", "vsock:2:1234", 1);
    ServiceNotify().Ready();
    auto manager = std::make_unique<Manager>();
    ServiceNotify notify;
    for (int count = 0; count < 10'000; ++count)
        notify.Alive();
    CHECK(manager->Heard() == "WATCHDOG=1");
    manager.reset();
    notify.Ready();
}
