#pragma once
// A serial port without a device: the semantics of the real ports on a clock that the test moves, and any fault that a
// test asks for. One thread.

#include "harness/ManualClock.h"
#include "port/SerialPort.h"

#include <chrono>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarvin::test {

// The far end of the fake port's line. It outlives the ports that are opened on it.
struct FakeLine {
    explicit FakeLine(ManualClock& clock) : clock(clock) {}

    // The bytes arrive at the port. With software flow on, the driver takes XON and XOFF out of them.
    void Arrive(std::string_view bytes);
    // The bytes that the port has put on the line since the last call.
    std::string TakeSent();
    // Moves output to the line as far as the clock and the holds allow.
    void Drain();

    ManualClock& clock;
    std::string input;
    std::string output;             // taken by the driver, not yet on the line
    std::string sent;               // on the line
    std::size_t bytesPerSecond = 0; // of the line; 0: at once
    LineHolds holds;                // reported by each status; CTS, DSR and XOFF hold the output
    std::vector<std::string> calls; // configuration steps, in order, with their arguments
    FlowControl flow;
    std::optional<KelText> advice; // of the next opening
    // Arrives once, after the next status was taken.
    std::string arrivesAfterStatus;

    // Faults. Each lasts until the test removes it.
    std::map<std::string, Error> failures;     // by operation: "Open", "Close", "FetchState", "Read" ...
    bool isPresent = true;                     // false: the device does not exist, or has vanished
    std::size_t outputRoom = 1000000;          // capacity of the driver; a write of more waits for its time-out
    std::chrono::milliseconds writeDuration{}; // each write moves the clock by this

private:
    ManualClock::TimePoint drainedUntil = clock.Now();
};

class FakePort : public SerialPort {
public:
    explicit FakePort(FakeLine& line) : line(line) {}

    bool IsOpen() const override { return isOpen; }
    Result<> Open(const KelText& portName) override;
    Result<> Close() override;
    Result<> SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) override;
    Result<> FetchState() override { return ConfigurationStep("FetchState"); }
    Result<> ApplyMode(const std::string& mode) override { return ConfigurationStep("ApplyMode", mode); }
    Result<> CommitState(const std::optional<FlowControl>& flow) override;
    Result<> SetTimeouts(std::chrono::milliseconds writeTotal) override;
    void Purge() override;
    Result<LineStatus> GetStatus() override;
    Result<std::size_t> Read(std::span<std::uint8_t> room) override;
    Result<> Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) override;
    Result<> ReleaseXoff() override;
    // Ends at once if bytes or a wake are there. Otherwise moves the clock by `longest`, but by 0.1 ms at least and by
    // 1 s at most: the line drains in between.
    void Wait(std::chrono::nanoseconds longest, Awaited awaited) override;
    void Wake() override { isWoken = true; }
    std::optional<KelText> TakeAdvice() override { return std::exchange(line.advice, std::nullopt); }

private:
    // Notes the call. The result is the fault of the operation, or success.
    Result<> Step(const std::string& operation, const std::string& arguments = {});
    Result<> ConfigurationStep(const std::string& operation, const std::string& arguments = {});
    Result<> Fault(const std::string& operation) const;

    FakeLine& line;
    bool isOpen = false;
    bool isWoken = false;
};

}
