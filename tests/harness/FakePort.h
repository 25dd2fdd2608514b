#pragma once
// A serial port without a device: the semantics of the real ones on a clock that the test moves, with every fault at
// hand. One thread.

#include "harness/ManualClock.h"
#include "port/SerialPort.h"

#include <chrono>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::test {

// The far end of the fake port's line, which outlives ports that are opened on it.
struct FakeLine {
    explicit FakeLine(ManualClock& manualClock) : clock(manualClock) {}

    // Bytes come in. With software flow on, the driver keeps XON and XOFF to itself.
    void Arrive(std::string_view bytes);
    // What has left the line so far, and forget it.
    std::string TakeSent();
    // Lets the output go on as far as the clock allows.
    void Drain();

    ManualClock& clock;
    std::string input;
    std::string output;             // taken by the driver, not yet on the line
    std::string sent;               // on the line
    std::size_t bytesPerSecond = 0; // of the line; 0: at once
    LineStatus holds;               // hold bits to report
    std::vector<std::string> calls; // configuration steps, in order, with their arguments
    FlowControl flow;

    // Faults, each until the test takes it back.
    std::map<std::string, PortError> failures; // by operation: "Open", "Close", "FetchState", "Read" ...
    bool isPresent = true;                     // false: the device is not there, or has vanished
    std::size_t outputRoom = 1000000;          // what the driver takes; a write of more waits for its time-out
    std::chrono::milliseconds writeDuration{}; // the clock moves by this in each write

private:
    ManualClock::TimePoint drainedUntil = clock.Now();
};

class FakePort : public SerialPort {
public:
    explicit FakePort(FakeLine& farEnd) : line(farEnd) {}

    bool IsOpen() const override { return isOpen; }
    PortError Open(const KelText& portName) override;
    PortError Close() override;
    PortError SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) override;
    PortError FetchState() override { return Step("FetchState"); }
    PortError ApplyMode(const std::string& mode) override { return Step("ApplyMode", mode); }
    PortError CommitState(const std::optional<FlowControl>& flow) override;
    PortError SetTimeouts(std::chrono::milliseconds writeTotal) override;
    void Purge() override;
    PortError GetStatus(LineStatus& status) override;
    PortError Read(std::span<std::uint8_t> room, std::size_t& byteCount) override;
    PortError Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) override;
    // Moves the clock to where a real wait would end at the latest, in steps in which the line can drain.
    void Wait(std::chrono::nanoseconds longest, Awaited awaited) override;
    void Wake() override { isWoken = true; }

private:
    PortError Step(const std::string& operation, const std::string& arguments = {});
    PortError Fault(const std::string& operation) const;

    FakeLine& line;
    bool isOpen = false;
    bool isWoken = false;
};

}
