// What holds for a port on a pseudo-terminal beside the contract. With TARVIN_WINDOWS_PROGRAMS the Windows back end
// serves it, under Wine.

#include "port/TerminalPortPosix.h"

#include <thread>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

// The reason why the port cannot be opened.
KelText Refusal(SerialPort& port, const KelText& name) {
    const Result<> result = port.Open(name);
    REQUIRE_FALSE(result);
    return result.Reason().text;
}

}

TEST_SUITE_BEGIN("port contract");

TEST_CASE("SerialPort: a wait ends with a byte or a wake, and a wait for a wake alone not with bytes") {
    TerminalPort fixture;
    SerialPort& port = fixture.Port();
    port.Wake();
    port.Wait(1h, SerialPort::Awaited::BytesToo);
    OpenPort(fixture, {});
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
    TerminalPort first;
    OpenPort(first, {});
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
    TerminalPort fixture;
    for (const char16_t* name : {u"COM7", u"C:\\", u""}) {
        CHECK_FALSE(Refusal(fixture.Port(), name).empty());
    }
    LeadWindowsPortTo(fixture.terminal.Device(), 12);
    OpenPort(fixture, {}, u"COM12");
    Write(fixture.Port(), "twelve");
    CHECK(fixture.Sent(6) == "twelve");
}

TEST_CASE("SerialPort: under Wine a write to a held line waits until the line is released" *
          doctest::skip(!AreWindowsProgramsMeant())) {
    TerminalPort fixture;
    SerialPort& port = fixture.Port();
    OpenPort(fixture, {.software = true});
    fixture.Arrive("a\x13"
                   "b");
    CHECK(ReadAll(port, 2) == "ab");
    std::size_t count = 0;
    bool isWritten = false;
    std::thread writer([&] {
        const std::uint8_t held[] = {'h', 'e', 'l', 'd'};
        isWritten = static_cast<bool>(port.Write(held, count));
    });
    CHECK(fixture.terminal.Read(1, 200ms).empty());
    fixture.Arrive("\x11");
    writer.join();
    CHECK(isWritten);
    CHECK(count == 4);
    CHECK(fixture.Sent(4) == "held");
}

TEST_SUITE_END();
