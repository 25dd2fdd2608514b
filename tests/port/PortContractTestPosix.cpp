// The contract of SerialPort, checked on every port of this test program.

#include "port/PortContract.h"

#include <functional>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

enum class Needs { Nothing, Hold };

void OnEachPort(const std::function<void(PortFixture&)>& check, Needs needs = Needs::Nothing) {
    for (const auto& fixture : MakePortFixtures()) {
        CAPTURE(fixture->Name());
        if (needs == Needs::Nothing || fixture->ShowsHold() != PortFixture::HoldShown::Never)
            check(*fixture);
    }
}

std::string EveryByte() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes.push_back(static_cast<char>(byte));
    return bytes;
}

// Sends an XOFF and bytes behind it, whose arrival says that the XOFF has arrived as well.
void Hold(PortFixture& fixture) {
    fixture.Arrive("a\x13"
                   "b");
    CHECK(ReadAll(fixture.Port(), 2) == "ab");
    if (fixture.ShowsHold() == PortFixture::HoldShown::AtOnce)
        StatusUntil(fixture.Port(), [](const LineStatus& status) { return status.holds.xoff; });
}

// Waits until the status shows the hold of a line for which output waits.
LineStatus HeldStatus(SerialPort& port) {
    return StatusUntil(port, [](const LineStatus& status) { return status.holds.xoff; });
}

void AwaitFreeLine(SerialPort& port) {
    StatusUntil(port, [](const LineStatus& status) { return !status.holds.xoff && status.outputCount == 0; });
}

}

TEST_SUITE_BEGIN("port contract");

TEST_CASE("SerialPort: every byte passes unchanged in both directions, and a read never waits") {
    OnEachPort([](PortFixture& fixture) {
        SerialPort& port = fixture.Port();
        OpenPort(fixture, {});
        std::uint8_t room[10];
        const auto nothing = port.Read(room);
        REQUIRE(nothing);
        CHECK(*nothing == 0);
        fixture.Arrive(EveryByte());
        CHECK(ReadAll(port, 256) == EveryByte());
        for (int repeat = 0; repeat < 40; ++repeat) {
            Write(port, EveryByte());
            CHECK(fixture.Sent(256) == EveryByte());
        }
        StatusUntil(port, [](const LineStatus& status) { return status.outputCount == 0; });
    });
}

TEST_CASE("SerialPort: without software flow a read gives XOFF and XON, and neither stops the output") {
    OnEachPort([](PortFixture& fixture) {
        SerialPort& port = fixture.Port();
        OpenPort(fixture, {});
        fixture.Arrive("a\x13");
        CHECK(ReadAll(port, 2) == "a\x13");
        Write(port, "sent");
        CHECK(fixture.Sent(4) == "sent");
        fixture.Arrive("\x11");
        CHECK(ReadAll(port, 1) == "\x11");
    });
}

TEST_CASE("SerialPort: with software flow an XOFF holds the output, an XON releases it, and a read gives neither") {
    OnEachPort(
        [](PortFixture& fixture) {
            SerialPort& port = fixture.Port();
            OpenPort(fixture, {.software = true});
            Hold(fixture);
            Write(port, "held");
            CHECK(HeldStatus(port).outputCount == 4);
            CHECK(fixture.Sent(0).empty());
            fixture.Arrive("\x11");
            AwaitFreeLine(port);
            CHECK(fixture.Sent(4) == "held");
        },
        Needs::Hold);
}

TEST_CASE("SerialPort: a release ends a hold by XOFF, drops the held bytes, and leaves the next XOFF its effect") {
    OnEachPort(
        [](PortFixture& fixture) {
            SerialPort& port = fixture.Port();
            OpenPort(fixture, {.software = true});
            for (int hold = 0; hold < 2; ++hold) {
                Hold(fixture);
                Write(port, "dropped");
                HeldStatus(port);
                CHECK(port.ReleaseXoff());
                Write(port, "kept");
                AwaitFreeLine(port);
                CHECK(fixture.Sent(4) == "kept");
            }
        },
        Needs::Hold);
}

TEST_CASE("SerialPort: a purge drops waiting bytes of both directions, on a held line too, and leaves it held") {
    OnEachPort(
        [](PortFixture& fixture) {
            SerialPort& port = fixture.Port();
            OpenPort(fixture, {.software = true});
            Hold(fixture);
            Write(port, "lost");
            fixture.Arrive("lost too");
            StatusUntil(port, [](const LineStatus& status) { return status.inputCount == 8; });
            HeldStatus(port);
            port.Purge();
            Write(port, "kept");
            CHECK(HeldStatus(port).inputCount == 0);
            CHECK(fixture.Sent(0).empty());
            fixture.Arrive("\x11"
                           "more");
            CHECK(ReadAll(port, 4) == "more");
            AwaitFreeLine(port);
            CHECK(fixture.Sent(4) == "kept");
        },
        Needs::Hold);
}

TEST_CASE("SerialPort: a closed port can be opened at once, and a vanished device is reported as gone") {
    OnEachPort([](PortFixture& fixture) {
        SerialPort& port = fixture.Port();
        OpenPort(fixture, {});
        CHECK(port.Close());
        CHECK_FALSE(port.IsOpen());
        OpenPort(fixture, {});
        fixture.Vanish();
        const auto deadline = std::chrono::steady_clock::now() + 10s;
        auto status = port.GetStatus();
        for (; status; status = port.GetStatus())
            REQUIRE(std::chrono::steady_clock::now() < deadline);
        CHECK(status.Reason().isGone);
        CHECK_FALSE(status.Reason().text.empty());
        CHECK_FALSE(port.GetStatus());
        // A write sets the count of the driver whatever its result is.
        const std::uint8_t lost[] = {'l', 'o', 's', 't'};
        std::size_t count = 100;
        (void)port.Write(lost, count);
        CHECK(count <= 4);
        CHECK(port.IsOpen());
        (void)port.Close();
        CHECK_FALSE(port.IsOpen());
        CHECK(port.Close());
        CHECK_FALSE(port.Open(u"COM1"));
        CHECK_FALSE(port.IsOpen());
    });
}

TEST_CASE("SerialPort: a device that vanishes while its line is held is reported as gone, with all that waits") {
    OnEachPort(
        [](PortFixture& fixture) {
            SerialPort& port = fixture.Port();
            OpenPort(fixture, {.software = true});
            Hold(fixture);
            Write(port, std::string(500, 'x'));
            HeldStatus(port);
            fixture.Vanish();
            const auto deadline = std::chrono::steady_clock::now() + 10s;
            auto status = port.GetStatus();
            for (; status; status = port.GetStatus())
                REQUIRE(std::chrono::steady_clock::now() < deadline);
            CHECK(status.Reason().isGone);
            (void)port.Close();
        },
        Needs::Hold);
}

TEST_SUITE_END();
