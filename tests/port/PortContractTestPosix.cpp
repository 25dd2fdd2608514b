// The contract of SerialPort, checked on the fake port and on a pseudo-terminal. The pseudo-terminal is served by the
// POSIX back end or, with TARVIN_WINDOWS_PROGRAMS, by the Windows back end under Wine.

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
    // The bytes that have arrived at the far end. Waits for `byteCount` bytes, 10 s at most.
    virtual std::string Sent(std::size_t byteCount) = 0;
    virtual void Vanish() = 0;
    // True if a held line takes a write and reports the hold. Wine differs from Windows here: its write waits until the
    // line is free.
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
    REQUIRE(port.Open(name));
    REQUIRE(port.SetQueueSizes(4000, 1000));
    REQUIRE(port.FetchState());
    REQUIRE(port.ApplyMode("baud=2400 parity=N data=8 stop=1"));
    REQUIRE(port.CommitState(flow));
    REQUIRE(port.SetTimeouts(10s));
    port.Purge();
}

// Reads until `byteCount` bytes have arrived. Fails the test after 10 s.
std::string ReadAll(SerialPort& port, std::size_t byteCount) {
    std::string bytes;
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (bytes.size() < byteCount) {
        REQUIRE(std::chrono::steady_clock::now() < deadline);
        port.Wait(100ms, SerialPort::Awaited::BytesToo);
        const auto status = port.GetStatus();
        REQUIRE(status);
        std::uint8_t room[1000];
        const auto count = port.Read(room);
        REQUIRE(count);
        CHECK(*count >= std::min(status->inputCount, sizeof room));
        bytes.append(reinterpret_cast<const char*>(room), *count);
    }
    return bytes;
}

// The reason why the port cannot be opened.
KelText Refusal(SerialPort& port, const KelText& name) {
    const Result<> result = port.Open(name);
    REQUIRE_FALSE(result);
    return result.Reason().text;
}

LineStatus StatusUntil(SerialPort& port, const std::function<bool(const LineStatus&)>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    for (;;) {
        REQUIRE(std::chrono::steady_clock::now() < deadline);
        const auto status = port.GetStatus();
        REQUIRE(status);
        if (condition(*status))
            return *status;
        port.Wait(1ms, SerialPort::Awaited::WakeOnly);
    }
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

TEST_CASE("SerialPort: every byte passes unchanged in both directions, and a read never waits") {
    ForEachBackEnd([](Fixture& fixture) {
        SerialPort& port = fixture.Port();
        Open(port, {});
        std::uint8_t room[10];
        const auto nothing = port.Read(room);
        REQUIRE(nothing);
        CHECK(*nothing == 0);
        fixture.Arrive(EveryByte());
        CHECK(ReadAll(port, 256) == EveryByte());
        for (int repeat = 0; repeat < 40; ++repeat) {
            std::size_t count = 0;
            CHECK(port.Write(Bytes(EveryByte()), count));
            CHECK(count == 256);
            CHECK(fixture.Sent(256) == EveryByte());
        }
        StatusUntil(port, [](const LineStatus& status) { return status.outputCount == 0; });
    });
}

TEST_CASE("SerialPort: with software flow an XOFF holds the output, an XON releases it, and a read gives neither") {
    ForEachBackEnd(
        [](Fixture& fixture) {
            SerialPort& port = fixture.Port();
            Open(port, {.software = true});
            fixture.Arrive("a\x13"
                           "b");
            CHECK(ReadAll(port, 2) == "ab");
            CHECK(StatusUntil(port, [](const LineStatus& status) { return status.holds.xoff; }).outputCount == 0);
            std::size_t count = 0;
            CHECK(port.Write(Bytes("held"), count));
            CHECK(count == 4);
            const auto status = port.GetStatus();
            REQUIRE(status);
            CHECK(status->holds.xoff);
            CHECK(status->outputCount == 4);
            CHECK(fixture.Sent(0).empty());
            fixture.Arrive("\x11");
            StatusUntil(port, [](const LineStatus& look) { return !look.holds.xoff && look.outputCount == 0; });
            CHECK(fixture.Sent(4) == "held");
        },
        Needs::Hold);
}

TEST_CASE("SerialPort: a release ends a hold by XOFF, drops the held bytes, and leaves the next XOFF its effect") {
    ForEachBackEnd(
        [](Fixture& fixture) {
            SerialPort& port = fixture.Port();
            Open(port, {.software = true});
            for (int hold = 0; hold < 2; ++hold) {
                fixture.Arrive("\x13");
                StatusUntil(port, [](const LineStatus& status) { return status.holds.xoff; });
                std::size_t count = 0;
                CHECK(port.Write(Bytes("dropped"), count));
                CHECK(port.ReleaseXoff());
                CHECK(port.Write(Bytes("kept"), count));
                StatusUntil(port, [](const LineStatus& look) { return !look.holds.xoff && look.outputCount == 0; });
                CHECK(fixture.Sent(4) == "kept");
            }
        },
        Needs::Hold);
}

TEST_CASE("SerialPort: a purge drops waiting bytes of both directions, on a held line too") {
    ForEachBackEnd(
        [](Fixture& fixture) {
            SerialPort& port = fixture.Port();
            Open(port, {.software = true});
            fixture.Arrive("\x13");
            StatusUntil(port, [](const LineStatus& status) { return status.holds.xoff; });
            std::size_t count = 0;
            CHECK(port.Write(Bytes("lost"), count));
            fixture.Arrive("lost too");
            StatusUntil(port, [](const LineStatus& status) { return status.inputCount == 8; });
            port.Purge();
            fixture.Arrive("\x11kept");
            CHECK(ReadAll(port, 4) == "kept");
            CHECK(port.Write(Bytes("kept"), count));
            StatusUntil(port, [](const LineStatus& status) { return status.outputCount == 0; });
            CHECK(fixture.Sent(4) == "kept");
        },
        Needs::Hold);
}

TEST_CASE("SerialPort: a closed port can be opened at once, and a vanished device is reported as gone") {
    ForEachBackEnd([](Fixture& fixture) {
        SerialPort& port = fixture.Port();
        Open(port, {});
        CHECK(port.Close());
        CHECK_FALSE(port.IsOpen());
        Open(port, {});
        fixture.Vanish();
        const auto deadline = std::chrono::steady_clock::now() + 10s;
        auto status = port.GetStatus();
        for (; status; status = port.GetStatus())
            REQUIRE(std::chrono::steady_clock::now() < deadline);
        CHECK(status.Reason().isGone);
        CHECK_FALSE(status.Reason().text.empty());
        CHECK_FALSE(port.GetStatus());
        // A write sets the count of the driver whatever its result is.
        std::size_t count = 100;
        (void)port.Write(Bytes("lost"), count);
        CHECK(count <= 4);
        CHECK(port.IsOpen());
        (void)port.Close();
        CHECK_FALSE(port.IsOpen());
        CHECK(port.Close());
        CHECK_FALSE(port.Open(u"COM1"));
        CHECK_FALSE(port.IsOpen());
    });
}

TEST_CASE("SerialPort: a wait ends with a byte or a wake, and a wait for a wake alone not with bytes") {
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

TEST_CASE("SerialPort: a device that is busy, no terminal or without a name is refused with a reason" *
          doctest::skip(AreWindowsProgramsMeant())) {
    TerminalFixture first;
    Open(first.Port(), {});
    PortNames names(first.folder / "KEL.INI");
    const auto second = MakeSerialPort(names);
    CHECK(Refusal(*second, u"COM1") == u"Device or resource busy");
    CHECK(Refusal(*second, u"COM7") == u"The section PORTS of KEL.INI names no device for this port.");
    first.folder.WriteFile("KEL.INI", "[PORTS]\nCOM1=" + (first.folder / "KEL.INI").string() + "\nCOM2=/nowhere\n");
    CHECK(Refusal(*second, u"COM1") == u"Inappropriate ioctl for device");
    CHECK(Refusal(*second, u"com2") == u"No such file or directory");
    CHECK_FALSE(second->IsOpen());
    const Result<> mode = first.Port().ApplyMode("baud=2400 parity=N data=8 stop=1.5");
    REQUIRE_FALSE(mode);
    CHECK(mode.Reason().text == u"Unsupported line settings: baud=2400 parity=N data=8 stop=1.5");
}

// Wine does not keep a port for one program, and cancels no write of a port: both have no test here.
TEST_CASE("SerialPort: Windows refuses a port that does not exist and opens one of two digits" *
          doctest::skip(!AreWindowsProgramsMeant())) {
    RemotePort port;
    for (const char16_t* name : {u"COM7", u"C:\\", u""}) {
        CHECK_FALSE(Refusal(port, name).empty());
    }
    PseudoTerminal terminal;
    LeadWindowsPortTo(terminal.Device(), 12);
    Open(port, {}, u"COM12");
    std::size_t count = 0;
    CHECK(port.Write(Bytes("twelve"), count));
    CHECK(terminal.Read(6) == "twelve");
}

TEST_CASE("SerialPort: under Wine a write to a held line waits until the line is released" *
          doctest::skip(!AreWindowsProgramsMeant())) {
    TerminalFixture fixture;
    SerialPort& port = fixture.Port();
    Open(port, {.software = true});
    fixture.Arrive("a\x13"
                   "b");
    CHECK(ReadAll(port, 2) == "ab");
    std::size_t count = 0;
    bool isWritten = false;
    std::thread writer([&] { isWritten = static_cast<bool>(port.Write(Bytes("held"), count)); });
    CHECK(fixture.terminal.Read(1, 200ms).empty());
    fixture.Arrive("\x11");
    writer.join();
    CHECK(isWritten);
    CHECK(count == 4);
    CHECK(fixture.Sent(4) == "held");
}

TEST_SUITE_END();
