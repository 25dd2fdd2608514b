// Notifications as the service of a real desktop gets them, on a session bus of the test's own.
#include "ui/Notifications.h"

#include "User.h"
#include "harness/ChildProcessPosix.h"
#include "harness/WaitUntil.h"

#include <csignal>
#include <cstdlib>
#include <optional>

namespace tarvin::test {

using namespace std::chrono_literals;

namespace {

class SessionBus {
public:
    SessionBus() : daemon("/usr/bin/dbus-daemon", {{"--session", "--nofork", "--print-address"}}) {
        ::setenv("DBUS_SESSION_BUS_ADDRESS", daemon.ReadLine().c_str(), 1);
    }
    ~SessionBus() { ::unsetenv("DBUS_SESSION_BUS_ADDRESS"); }

    // Starts a service that prints what it gets.
    ChildProcess& StartService() {
        service.emplace("/usr/bin/dunst", ChildProcess::Options{{"-print"}});
        // A call to the service itself would make the bus start another one that takes the name.
        REQUIRE(WaitUntil([] {
            return std::system(
                       "dbus-send --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner "
                       "string:org.freedesktop.Notifications 2>&1 | grep -q 'boolean true'") == 0;
        }));
        return *service;
    }

private:
    ChildProcess daemon;
    std::optional<ChildProcess> service;
};

struct NotifyingWindow {
    NotifyingWindow() {
        OnUi([this] {
            window = new wxFrame(nullptr, wxID_ANY, "LASER");
            notifications = std::make_unique<Notifications>(*window);
        });
    }
    ~NotifyingWindow() {
        OnUi([this] {
            notifications.reset();
            window->Destroy();
        });
    }

    void Show(const Notification& notification) {
        OnUi([&] { notifications->Show(notification); });
    }

    wxFrame* window = nullptr;
    std::unique_ptr<Notifications> notifications;
};

}

TEST_CASE("Notifications: the desktop shows title, text and urgency, and a newer one takes the place of its slot") {
    SessionBus bus;
    ChildProcess& service = bus.StartService();
    NotifyingWindow window;
    window.Show({1, u"LASER: <4711> was sent", u"A & B <i>", true});
    REQUIRE_MESSAGE(service.WaitForOutput("LASER: <4711> was sent"), service.Output());
    CHECK(service.WaitForOutput("A &amp; B &lt;i&gt;"));
    CHECK(service.WaitForOutput("CRITICAL"));
    window.Show({2, u"LASER: link", {}, false});
    CHECK(service.WaitForOutput("NORMAL"));
    window.Show({1, u"LASER: newer", {}, true});
    CHECK(service.WaitForOutput("LASER: newer"));
    // Two slots, so two notifications are on the screen.
    CHECK(WaitUntil([] { return std::system("test $(dunstctl count displayed) = 2") == 0; }));
}

TEST_CASE("Notifications: without a bus, and with a service that hangs, the window goes on") {
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    ::setenv("XDG_RUNTIME_DIR", "/nonexistent", 1);
    {
        NotifyingWindow window;
        for (int number = 0; number < 3; ++number)
            window.Show({1, u"unseen", {}, false});
    }
    ::unsetenv("XDG_RUNTIME_DIR");
    SessionBus bus;
    ChildProcess& service = bus.StartService();
    NotifyingWindow window;
    window.Show({1, u"LASER: first", {}, false});
    REQUIRE(service.WaitForOutput("LASER: first"));
    service.Signal(SIGSTOP);
    const auto begin = std::chrono::steady_clock::now();
    for (int number = 1; number <= 50; ++number)
        window.Show({1, u"LASER: number " + ToText(number), {}, false});
    CHECK(std::chrono::steady_clock::now() - begin < 2s);
    service.Signal(SIGCONT);
    CHECK(service.WaitForOutput("LASER: number 50"));
    CHECK(service.Output().find("LASER: number 25") == std::string::npos);
}

}
