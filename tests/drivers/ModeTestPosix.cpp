// The modes of the line and the settings of each driver.

#include "drivers/DriverFixturePosix.h"
#include "drivers/UsbAdapter.h"
#include "harness/WaitUntil.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include <doctest/doctest.h>
#include <unistd.h>

using namespace tarvin;
using namespace tarvin::test;

namespace {

// Empty if the driver grants the mode, otherwise the reason of the failure.
std::string Refusal(SerialPort& port, const std::string& mode) {
    REQUIRE(port.ApplyMode(mode));
    const Result<> result = port.CommitState(FlowControl());
    return result ? std::string() : ToUtf8(result.Reason().text);
}

std::string FirstWord(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::string word;
    file >> word;
    return word;
}

std::filesystem::path SystemFolder() {
    return "/sys/class/tty" / Driver().Device().filename();
}

bool IsNamed(const char* name) {
    return std::strcmp(Driver().Name(), name) == 0;
}

}

TEST_CASE("Mode: every speed of the settings dialog is granted, with each form of a character") {
    DriverFixture fixture;
    SerialPort& port = fixture.Port();
    REQUIRE(port.Open(u"COM1"));
    REQUIRE(port.FetchState());
    for (const char* speed : {"1200", "2400", "4800", "9600", "19200", "38400", "57600", "115200"}) {
        for (const char* form : {"parity=N data=8 stop=1", "parity=E data=7 stop=2", "parity=O data=7 stop=1"}) {
            CAPTURE(form);
            CHECK(Refusal(port, "baud=" + std::string(speed) + " " + form).empty());
        }
    }
    if (UsbAdapter* const adapter = Driver().Adapter()) {
        CHECK(Refusal(port, "baud=2400 parity=E data=7 stop=2").empty());
        const UsbAdapter::Setup setup = adapter->Settings();
        CHECK(std::abs(setup.bitsPerSecond - 2400) < 3);
        CHECK(setup.dataBits == 7);
        CHECK(setup.parity == 2);
        CHECK(setup.stopBits == 2);
        CHECK(setup.isDtrOn);
        CHECK(setup.isRtsOn);
    }
}

TEST_CASE("Mode: one that is not granted is refused, names what the device offers, and leaves the one before") {
    DriverFixture fixture;
    SerialPort& port = fixture.Port();
    OpenPort(fixture, {});
    const auto goesOn = [&] {
        Write(port, "before");
        CHECK(fixture.Sent(6) == "before");
    };
    if (Driver().IsSerialCore()) {
        CHECK(Refusal(port, "baud=128000 parity=E data=7 stop=1").find(" baud, 7 data bits, even parity, 1 stop bit") !=
              std::string::npos);
        goesOn();
    }
    if (UsbAdapter* const adapter = Driver().Adapter()) {
        for (const char* dataBits : {"5", "6"}) {
            CHECK(Refusal(port, std::string("baud=9600 parity=N data=") + dataBits + " stop=1") ==
                  "Not granted: the device offers 9600 baud, 8 data bits, no parity, 1 stop bit");
        }
        CHECK(std::abs(adapter->Settings().bitsPerSecond - 115200) < 2000);
        goesOn();
    }
}

TEST_CASE("Mode: received bytes are handed over at once, and a missing right for that is told once") {
    const std::filesystem::path setting =
        SystemFolder() / (Driver().IsSerialCore() ? "rx_trig_bytes" : "device/latency_timer");
    DriverFixture fixture;
    SerialPort& port = fixture.Port();
    OpenPort(fixture, {});
    CHECK_FALSE(port.TakeAdvice());
    if (!IsNamed("cdc-acm"))
        CHECK(FirstWord(setting) == "1");
    if (UsbAdapter* const adapter = Driver().Adapter())
        CHECK(adapter->Settings().latencyMilliseconds == 1);
    if (!Driver().IsSerialCore())
        return;
    REQUIRE(port.Close());
    std::ofstream(setting) << "8" << std::flush;
    std::filesystem::permissions(Driver().Device(), std::filesystem::perms::all);
    std::filesystem::permissions(fixture.Folder(), std::filesystem::perms::all);
    constexpr uid_t otherUser = 65534;
    REQUIRE(::seteuid(otherUser) == 0);
    for (const bool isFirst : {true, false}) {
        const auto opened = port.Open(u"COM1");
        const auto advice = port.TakeAdvice();
        (void)port.Close();
        CHECK(opened);
        CHECK(advice.has_value() == isFirst);
        if (advice)
            CHECK(ToUtf8(*advice).find("rx_trig_bytes cannot be set to 1: Permission denied") != std::string::npos);
    }
    REQUIRE(::seteuid(0) == 0);
}

TEST_CASE("Mode: with a receive trigger of 1 the end of a message comes without four idle characters") {
    if (!Driver().IsSerialCore())
        return;
    DriverFixture fixture;
    SerialPort& port = fixture.Port();
    // The median of the times from a request to its arrival.
    const auto measure = [&](int bitsPerSecond, int trigger) {
        std::ofstream(SystemFolder() / "rx_trig_bytes") << trigger << std::flush;
        std::vector<double> milliseconds;
        for (int attempt = 0; attempt < 21; ++attempt) {
            const auto started = std::chrono::steady_clock::now();
            fixture.Arrive("ABTSV\r");
            CHECK(ReadAll(port, 6) == "ABTSV\r");
            const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - started;
            milliseconds.push_back(spent.count());
        }
        std::ranges::nth_element(milliseconds, milliseconds.begin() + 10);
        MESSAGE(bitsPerSecond, " baud, trigger ", trigger, ": ", milliseconds[10], " ms");
        return milliseconds[10];
    };
    for (const int bitsPerSecond : {2400, 9600, 115200}) {
        REQUIRE(port.Open(u"COM1"));
        REQUIRE(port.FetchState());
        REQUIRE(Refusal(port, "baud=" + std::to_string(bitsPerSecond) + " parity=N data=8 stop=1").empty());
        const double atOnce = measure(bitsPerSecond, 1);
        const double late = std::min(measure(bitsPerSecond, 8), measure(bitsPerSecond, 14));
        // Four characters take 16.7 ms at 2400 baud.
        if (bitsPerSecond == 2400)
            CHECK(late - atOnce > 8);
        REQUIRE(port.Close());
    }
}
