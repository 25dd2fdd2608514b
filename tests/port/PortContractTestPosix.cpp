// What every back end of SerialPort promises, checked on the fake that the engine is tested with and on a real line: by
// this system's own back end or, where the Windows programs are meant, by that of Windows.

#include "harness/FakePort.h"
#include "harness/PseudoTerminalPosix.h"
#include "harness/RemotePortPosix.h"
#include "harness/TemporaryFolder.h"
#include "harness/WindowsProgramsPosix.h"
#include "port/PortNames.h"
#include "port/SerialPort.h"

#include <functional>
#include <thread>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

// One port and the far end of its line.
class Fixture {
public:
    virtual ~Fixture() = default;
    virtual SerialPort& Port() = 0;
    virtual void Arrive(std::string_view bytes) = 0;
    // Looks until `byteCount` bytes have arrived at the far end, or will not.
    virtual std::string Sent(std::size_t byteCount) = 0;
    virtual void Vanish() = 0;
    // Whether the device takes what is written while the line is held, and tells of the hold. What Windows does here,
    // Wine does not: a write waits there until the line is free.
    virtual bool TellsHold() const { return true; }
};

class FakeFixture : public Fixture {
public:
    SerialPort& Port() override { return port; }
    void Arrive(std::string_view bytes) override { line.Arrive(bytes); }
    std::string Sent(std::size_t) override { return line.TakeSent(); }
    void Vanish() override { line.isPresent = false; }

private:
    ManualClock clock;
    FakeLine line{clock};
    FakePort port{line};
};

class TerminalFixture : public Fixture {
public:
    TerminalFixture() {
        if (AreWindowsProgramsMeant()) {
            LeadWindowsPortTo(terminal.Device());
            port = std::make_unique<RemotePort>();
            return;
        }
        folder.WriteFile("KEL.INI", "[PORTS]\nCOM1=" + terminal.Device().string() + "\n");
        names = std::make_unique<PortNames>(folder / "KEL.INI");
        port = MakeSerialPort(*names);
    }
    SerialPort& Port() override { return *port; }
    void Arrive(std::string_view bytes) override { terminal.Write(bytes); }
    std::string Sent(std::size_t byteCount) override { return terminal.Read(byteCount, byteCount > 0 ? 10s : 0s); }
    void Vanish() override {
        terminal.Close();
        if (AreWindowsProgramsMeant())
            LeadWindowsPortTo(folder.Path());
    }
    bool TellsHold() const override { return !AreWindowsProgramsMeant(); }

    PseudoTerminal terminal;
    TemporaryFolder folder;
    std::unique_ptr<PortNames> names;
    std::unique_ptr<SerialPort> port;
};

enum class Needs { Nothing, Hold };

void ForEachBackEnd(const std::function<void(Fixture&)>& check, Needs needs = Needs::Nothing) {
    FakeFixture fake;
    TerminalFixture terminal;
    for (Fixture* fixture : {static_cast<Fixture*>(&fake), static_cast<Fixture*>(&terminal)}) {
        CAPTURE(fixture == &fake);
        if (needs == Needs::Nothing || fixture->TellsHold())
            check(*fixture);
    }
}

void Open(SerialPort& port, const FlowControl& flow, const KelText& name = u"COM1") {
    REQUIRE_FALSE(port.Open(name));
    REQUIRE_FALSE(port.SetQueueSizes(4000, 1000));
    REQUIRE_FALSE(port.FetchState());
    REQUIRE_FALSE(port.ApplyMode("baud=2400 parity=N data=8 stop=1"));
    REQUIRE_FALSE(port.CommitState(flow));
    REQUIRE_FALSE(port.SetTimeouts(10s));
    port.Purge();
}

// Reads until `byteCount` bytes are there; fails the test if they do not come.
std::string ReadAll(SerialPort& port, std::size_t byteCount) {
    std::string bytes;
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (bytes.size() < byteCount) {
        REQUIRE(std::chrono::steady_clock::now() < deadline);
        port.Wait(100ms, SerialPort::Awaited::BytesToo);
        LineStatus status;
        REQUIRE_FALSE(port.GetStatus(status));
        std::uint8_t room[1000];
        std::size_t count = 0;
        REQUIRE_FALSE(port.Read(room, count));
        CHECK(count >= std::min(status.inputCount, sizeof room));
        bytes.append(reinterpret_cast<const char*>(room), count);
    }
    return bytes;
}

LineStatus StatusUntil(SerialPort& port, const std::function<bool(const LineStatus&)>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    LineStatus status;
    do {
        REQUIRE(std::chrono::steady_clock::now() < deadline);
        REQUIRE_FALSE(port.GetStatus(status));
        if (!condition(status))
            port.Wait(1ms, SerialPort::Awaited::WakeOnly);
    } while (!condition(status));
    return status;
}

std::string EveryByte() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes.push_back(static_cast<char>(byte));
    return bytes;
}

std::span<const std::uint8_t> Bytes(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}

TEST_SUITE_BEGIN("port contract");

TEST_CASE("a port hands over every byte as it is, and never makes a reader wait") {
    ForEachBackEnd([](Fixture& fixture) {
        SerialPort& port = fixture.Port();
        Open(port, {});
        std::uint8_t room[10];
        std::size_t count = 1;
        CHECK_FALSE(port.Read(room, count));
        CHECK(count == 0);
        fixture.Arrive(EveryByte());
        CHECK(ReadAll(port, 256) == EveryByte());
        for (int repeat = 0; repeat < 40; ++repeat) {
            CHECK_FALSE(port.Write(Bytes(EveryByte()), count));
            CHECK(count == 256);
            CHECK(fixture.Sent(256) == EveryByte());
        }
        StatusUntil(port, [](const LineStatus& status) { return status.outputCount == 0; });
    });
}

TEST_CASE("with software flow an XOFF holds what is written, an XON lets it go, and neither is read") {
    ForEachBackEnd(
        [](Fixture& fixture) {
            SerialPort& port = fixture.Port();
            Open(port, {.software = true});
            fixture.Arrive("a\x13"
                           "b");
            CHECK(ReadAll(port, 2) == "ab");
            CHECK(StatusUntil(port, [](const LineStatus& status) { return status.xoffHold; }).outputCount == 0);
            std::size_t count = 0;
            CHECK_FALSE(port.Write(Bytes("held"), count));
            CHECK(count == 4);
            LineStatus status;
            CHECK_FALSE(port.GetStatus(status));
            CHECK(status.xoffHold);
            CHECK(status.outputCount == 4);
            CHECK(fixture.Sent(0).empty());
            fixture.Arrive("\x11");
            StatusUntil(port, [](const LineStatus& look) { return !look.xoffHold && look.outputCount == 0; });
            CHECK(fixture.Sent(4) == "held");
        },
        Needs::Hold);
}

TEST_CASE("a purge drops what waits in both directions, also while the line is held") {
    ForEachBackEnd(
        [](Fixture& fixture) {
            SerialPort& port = fixture.Port();
            Open(port, {.software = true});
            fixture.Arrive("\x13");
            StatusUntil(port, [](const LineStatus& status) { return status.xoffHold; });
            std::size_t count = 0;
            CHECK_FALSE(port.Write(Bytes("lost"), count));
            fixture.Arrive("lost too");
            StatusUntil(port, [](const LineStatus& status) { return status.inputCount == 8; });
            port.Purge();
            fixture.Arrive("\x11kept");
            CHECK(ReadAll(port, 4) == "kept");
            CHECK_FALSE(port.Write(Bytes("kept"), count));
            StatusUntil(port, [](const LineStatus& status) { return status.outputCount == 0; });
            CHECK(fixture.Sent(4) == "kept");
        },
        Needs::Hold);
}

TEST_CASE("an open port is nobody else's, a closed one is free at once, and one that vanished says so") {
    ForEachBackEnd([](Fixture& fixture) {
        SerialPort& port = fixture.Port();
        Open(port, {});
        CHECK_FALSE(port.Close());
        CHECK_FALSE(port.IsOpen());
        Open(port, {});
        fixture.Vanish();
        LineStatus status;
        PortError error;
        const auto deadline = std::chrono::steady_clock::now() + 10s;
        while (!(error = port.GetStatus(status)))
            REQUIRE(std::chrono::steady_clock::now() < deadline);
        CHECK(error.gone);
        CHECK_FALSE(error.text.empty());
        CHECK(port.IsOpen());
        port.Close();
        CHECK(port.Open(u"COM1"));
        CHECK_FALSE(port.IsOpen());
    });
}

TEST_CASE("a wait ends with a byte, with a wake before or during it, and not with bytes that nobody asked for") {
    TerminalFixture fixture;
    SerialPort& port = fixture.Port();
    port.Wake();
    port.Wait(1h, SerialPort::Awaited::BytesToo);
    Open(port, {});
    fixture.Arrive("x");
    port.Wait(1h, SerialPort::Awaited::BytesToo);
    std::thread waker([&] { port.Wake(); });
    port.Wait(1h, SerialPort::Awaited::WakeOnly);
    waker.join();
    fixture.Vanish();
    port.Wait(1h, SerialPort::Awaited::BytesToo);
}

TEST_CASE("a device that is busy, no terminal or not named is refused with a reason" *
          doctest::skip(AreWindowsProgramsMeant())) {
    TerminalFixture first;
    Open(first.Port(), {});
    PortNames names(first.folder / "KEL.INI");
    const auto second = MakeSerialPort(names);
    CHECK(second->Open(u"COM1").text == u"Device or resource busy");
    CHECK(second->Open(u"COM7").text == u"The section PORTS of KEL.INI names no device for this port.");
    first.folder.WriteFile("KEL.INI", "[PORTS]\nCOM1=" + (first.folder / "KEL.INI").string() + "\nCOM2=/nowhere\n");
    CHECK(second->Open(u"COM1").text == u"Inappropriate ioctl for device");
    CHECK(second->Open(u"com2").text == u"No such file or directory");
    CHECK_FALSE(second->IsOpen());
    CHECK(first.Port().ApplyMode("baud=2400 parity=N data=8 stop=1.5").text ==
          u"Unsupported line settings: baud=2400 parity=N data=8 stop=1.5");
}

// That a port is nobody else's, and that a write is cancelled, Wine does not do for ports.
TEST_CASE("on Windows a port that is not there is refused, and one of two digits is opened" *
          doctest::skip(!AreWindowsProgramsMeant())) {
    RemotePort port;
    for (const char16_t* name : {u"COM7", u"C:\\", u""}) {
        const PortError error = port.Open(name);
        CHECK(error);
        CHECK_FALSE(error.text.empty());
    }
    PseudoTerminal terminal;
    LeadWindowsPortTo(terminal.Device(), 12);
    Open(port, {}, u"COM12");
    std::size_t count = 0;
    CHECK_FALSE(port.Write(Bytes("twelve"), count));
    CHECK(terminal.Read(6) == "twelve");
}

TEST_CASE("on Windows a write to a held line waits until the line is let go" *
          doctest::skip(!AreWindowsProgramsMeant())) {
    TerminalFixture fixture;
    SerialPort& port = fixture.Port();
    Open(port, {.software = true});
    fixture.Arrive("a\x13"
                   "b");
    CHECK(ReadAll(port, 2) == "ab");
    std::size_t count = 0;
    PortError error;
    std::thread writer([&] { error = port.Write(Bytes("held"), count); });
    CHECK(fixture.terminal.Read(1, 200ms).empty());
    fixture.Arrive("\x11");
    writer.join();
    CHECK_FALSE(error);
    CHECK(count == 4);
    CHECK(fixture.Sent(4) == "held");
}

TEST_SUITE_END();
