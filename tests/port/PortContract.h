#pragma once
// What the contract of SerialPort is checked on: ports with a line whose far end the test holds. Each test program that
// compiles the cases says which ports these are.

#include "port/SerialPort.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::test {

// One port, closed, under the name COM1.
class PortFixture {
public:
    // When a hold by XOFF shows in the status: as soon as the XOFF is there, once output waits, or never.
    enum class HoldShown { AtOnce, WithOutput, Never };

    virtual ~PortFixture() = default;
    virtual std::string_view Name() const = 0;
    virtual SerialPort& Port() = 0;
    virtual std::string Mode() const { return "baud=2400 parity=N data=8 stop=1"; }
    // The bytes go to the port.
    virtual void Arrive(std::string_view bytes) = 0;
    // The bytes that have arrived at the far end. Waits for `byteCount` bytes, 10 s at most.
    virtual std::string Sent(std::size_t byteCount) = 0;
    // Takes the device away, for as long as the fixture lasts.
    virtual void Vanish() = 0;
    virtual HoldShown ShowsHold() const { return HoldShown::AtOnce; }
};

// All ports of this test program, each with nothing on its line.
std::vector<std::unique_ptr<PortFixture>> MakePortFixtures();

// Opens and configures the port as the engine does. Fails the test if a step fails.
void OpenPort(PortFixture& fixture, const FlowControl& flow, const KelText& name = u"COM1");
// Reads until `byteCount` bytes have arrived. Fails the test after 10 s.
std::string ReadAll(SerialPort& port, std::size_t byteCount);
// Looks until the condition holds. Fails the test after 10 s.
LineStatus StatusUntil(SerialPort& port, const std::function<bool(const LineStatus&)>& condition);
// Gives the bytes to the port, which must take them all.
void Write(SerialPort& port, std::string_view bytes);

}
