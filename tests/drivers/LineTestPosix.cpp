// What happens on the line: errors, holds, and a device that is pulled out.

#include "drivers/DriverFixturePosix.h"
#include "drivers/UsbAdapter.h"
#include "harness/WaitUntil.h"

#include <algorithm>
#include <sstream>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

// Looks at the port as the engine does, until the condition holds or `longest` has passed. True if it holds.
bool ServeUntil(SerialPort& port, std::chrono::milliseconds longest, const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + longest;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        REQUIRE(port.GetStatus());
        port.Wait(2ms, SerialPort::Awaited::BytesToo);
    }
    return true;
}

std::string Text(const LineErrors& errors) {
    std::ostringstream text;
    text << errors.parity << " parity, " << errors.framing << " framing, " << errors.overrun << " overrun, "
         << errors.breaks << " breaks";
    return text.str();
}

void OpenAt(DriverFixture& fixture, int bitsPerSecond, const FlowControl& flow) {
    SerialPort& port = fixture.Port();
    REQUIRE(port.Open(u"COM1"));
    REQUIRE(port.FetchState());
    REQUIRE(port.ApplyMode("baud=" + std::to_string(bitsPerSecond) + " parity=N data=8 stop=1"));
    REQUIRE(port.CommitState(flow));
    port.Purge();
}

// Stops a long write by an XOFF and lets it go on. Returns how many characters the line has sent after the XOFF.
std::size_t CountAfterXoff(int bitsPerSecond) {
    DriverFixture fixture;
    SerialPort& port = fixture.Port();
    OpenAt(fixture, bitsPerSecond, {.software = true});
    const auto started = std::chrono::steady_clock::now();
    // Two seconds on a fast line: a computer that is busy must not let all of it pass before the XOFF.
    const auto byteCount = static_cast<std::size_t>(bitsPerSecond < 9600 ? 100 : bitsPerSecond / 5);
    Write(port, std::string(byteCount, 'x'));
    std::string sent;
    const auto take = [&] {
        sent += Driver().Receive(0, 0ms);
        return sent.size();
    };
    REQUIRE(ServeUntil(port, 10s, [&] { return take() > byteCount / 4; }));
    fixture.Arrive("\x13");
    // A line without a speed passes all at once what a real one would still have to send.
    const auto sendable = static_cast<std::size_t>((std::chrono::steady_clock::now() - started) * bitsPerSecond / 10s);
    const std::size_t before = Driver().HasSpeed() ? take() : std::min(take(), sendable);
    CHECK(ServeUntil(port, 10s, [&] { return port.GetStatus()->holds.xoff; }));
    // Long enough for twice the characters that may follow.
    ServeUntil(port, std::chrono::milliseconds(64 * 10'000 / bitsPerSecond + 100), [] { return false; });
    const std::size_t following = take() - before;
    CHECK(take() < byteCount);
    fixture.Arrive("\x11");
    CHECK(ServeUntil(port, 10s, [&] { return take() == byteCount; }));
    return following;
}

}

TEST_CASE("Line: parity, framing and overrun errors and breaks are counted once, and the bytes stay as they came") {
    UsbAdapter* const adapter = Driver().Adapter();
    if (adapter == nullptr)
        return;
    DriverFixture fixture;
    SerialPort& port = fixture.Port();
    OpenPort(fixture, {});
    struct {
        UsbAdapter::LineError error;
        char byte;
        LineErrors counted;
        std::string bytes;
    } const cases[] = {
        {UsbAdapter::parityError, 'e', {1, 0, 0, 0}, "aeb"},
        {UsbAdapter::framingError, 'e', {0, 1, 0, 0}, "aeb"},
        {UsbAdapter::overrun, 'e', {0, 0, 1, 0}, "aeb"},
        {UsbAdapter::breakReceived, '\0', {0, 0, 0, 1}, "ab"},
    };
    for (const auto& expected : cases) {
        CAPTURE(int(expected.error));
        adapter->Arrive("a");
        adapter->Arrive({&expected.byte, 1}, expected.error);
        adapter->Arrive("b");
        std::string bytes;
        LineErrors errors;
        CHECK(WaitUntil([&] {
            const auto status = port.GetStatus();
            REQUIRE(status);
            errors.parity += status->errors.parity;
            errors.framing += status->errors.framing;
            errors.overrun += status->errors.overrun;
            errors.breaks += status->errors.breaks;
            std::uint8_t room[10];
            const auto count = port.Read(room);
            REQUIRE(count);
            bytes.append(reinterpret_cast<const char*>(room), *count);
            return bytes.ends_with("b");
        }));
        // FTDI's driver puts a byte of its own in the place of an overrun or a break.
        std::erase(bytes, '\0');
        CHECK(bytes == expected.bytes);
        CHECK(Text(errors) == Text(expected.counted));
        CHECK(Text(port.GetStatus()->errors) == Text({}));
    }
}

TEST_CASE("Line: at most 32 characters follow an XOFF at every speed, and the rest goes out at XON") {
    // QEMU's 16550 sends all at once, so nothing is left for the kernel to hold.
    if (Driver().IsSerialCore())
        return;
    for (const int bitsPerSecond : {1200, 9600, 115200}) {
        CAPTURE(bitsPerSecond);
        std::vector<std::size_t> following;
        // A computer that is busy with something else delays the XOFF. A pace that is wrong shows at each attempt.
        while (following.empty() || (following.back() > 32 && following.size() < 5))
            following.push_back(CountAfterXoff(bitsPerSecond));
        MESSAGE(bitsPerSecond, " baud: ", following.back(), " characters follow an XOFF");
        CHECK(following.back() <= 32);
    }
}

TEST_CASE("Line: the pace of the output keeps the line busy") {
    if (!Driver().HasSpeed())
        return;
    DriverFixture fixture;
    SerialPort& port = fixture.Port();
    OpenAt(fixture, 9600, {.software = true});
    constexpr std::size_t byteCount = 480;
    const auto started = std::chrono::steady_clock::now();
    Write(port, std::string(byteCount, 'x'));
    std::string sent;
    CHECK(ServeUntil(port, 10s, [&] {
        sent += Driver().Receive(0, 0ms);
        return sent.size() == byteCount;
    }));
    // Half a second on the line.
    CHECK(std::chrono::steady_clock::now() - started < 700ms);
}

TEST_CASE("Line: CTS and DSR hold the output and release it, and a held port closes at once") {
    UsbAdapter* const adapter = Driver().Adapter();
    if (adapter == nullptr)
        return;
    for (const auto line : {UsbAdapter::cts, UsbAdapter::dsr}) {
        CAPTURE(line);
        DriverFixture fixture;
        SerialPort& port = fixture.Port();
        const bool isCts = line == UsbAdapter::cts;
        OpenAt(fixture, 9600, {.ctsOutput = isCts, .dsrOutput = !isCts, .rtsHandshake = isCts});
        adapter->SetModemLine(line, false);
        StatusUntil(port, [&](const LineStatus& status) { return isCts ? status.holds.cts : status.holds.dsr; });
        Write(port, "held");
        CHECK(port.GetStatus()->outputCount == 4);
        CHECK(fixture.Sent(0).empty());
        adapter->SetModemLine(line, true);
        StatusUntil(port, [](const LineStatus& status) { return status.outputCount == 0; });
        CHECK(fixture.Sent(4) == "held");
        // Held in the middle of a message: some of its bytes are in the adapter already.
        Write(port, std::string(1000, 'x'));
        adapter->SetModemLine(line, false);
        StatusUntil(port, [&](const LineStatus& status) { return isCts ? status.holds.cts : status.holds.dsr; });
        const auto started = std::chrono::steady_clock::now();
        port.Purge();
        CHECK(port.Close());
        CHECK(std::chrono::steady_clock::now() - started < 1s);
        adapter->SetModemLine(line, true);
    }
}

TEST_CASE("Line: a device that is pulled out and plugged in again works, and sends nothing of what waited") {
    DriverFixture fixture;
    SerialPort& port = fixture.Port();
    for (const bool isHeld : {false, true}) {
        CAPTURE(isHeld);
        OpenAt(fixture, 9600, {.software = true});
        if (isHeld) {
            fixture.Arrive("a\x13");
            CHECK(ReadAll(port, 1) == "a");
        }
        Write(port, std::string(2000, 'x'));
        fixture.Vanish();
        REQUIRE(WaitUntil([&] { return !port.GetStatus(); }));
        (void)port.Close();
        fixture.Return();
        // What was on the line when the device went.
        while (!Driver().Receive(1, 100ms).empty()) {
        }
        OpenAt(fixture, 9600, {.software = true});
        Write(port, "new");
        std::string sent;
        CHECK(ServeUntil(port, 10s, [&] { return (sent += Driver().Receive(0, 0ms)).size() >= 3; }));
        CHECK(sent == "new");
        REQUIRE(port.Close());
    }
}
