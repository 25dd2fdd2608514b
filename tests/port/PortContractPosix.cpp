#include "port/PortContract.h"

#include <algorithm>

#include <doctest/doctest.h>

namespace tarvin::test {

using namespace std::chrono_literals;

void OpenPort(PortFixture& fixture, const FlowControl& flow, const KelText& name) {
    SerialPort& port = fixture.Port();
    REQUIRE(port.Open(name));
    REQUIRE(port.SetQueueSizes(4000, 1000));
    REQUIRE(port.FetchState());
    REQUIRE(port.ApplyMode(fixture.Mode()));
    REQUIRE(port.CommitState(flow));
    REQUIRE(port.SetTimeouts(10s));
    port.Purge();
}

std::string ReadAll(SerialPort& port, std::size_t byteCount) {
    std::string bytes;
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (bytes.size() < byteCount) {
        REQUIRE_MESSAGE(std::chrono::steady_clock::now() < deadline, bytes.size());
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

LineStatus StatusUntil(SerialPort& port, const std::function<bool(const LineStatus&)>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    for (;;) {
        const auto status = port.GetStatus();
        REQUIRE(status);
        if (condition(*status))
            return *status;
        REQUIRE(std::chrono::steady_clock::now() < deadline);
        port.Wait(1ms, SerialPort::Awaited::WakeOnly);
    }
}

void Write(SerialPort& port, std::string_view bytes) {
    std::size_t byteCount = 0;
    REQUIRE(port.Write({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, byteCount));
    REQUIRE(byteCount == bytes.size());
}

}
