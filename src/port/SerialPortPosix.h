#pragma once
// The serial port on termios. It keeps a driver queue of its own in front of non-blocking writes: a write is taken
// whole and never waits for a held line. Where the driver does not hold the line, this class does.

#include "port/LineDriverPosix.h"
#include "port/LineErrorCountersPosix.h"
#include "port/PacedOutput.h"
#include "port/SerialPort.h"
#include "port/StoppedOutputPosix.h"

#include <chrono>
#include <set>
#include <vector>

#include <asm/termbits.h>

namespace tarvin {

class SerialPortPosix : public SerialPort {
public:
    explicit SerialPortPosix(const PortNames& names);
    ~SerialPortPosix() override;

    bool IsOpen() const override { return device >= 0; }
    Result<> Open(const KelText& portName) override;
    Result<> Close() override;
    Result<> SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) override;
    Result<> FetchState() override;
    Result<> ApplyMode(const std::string& mode) override;
    Result<> CommitState(const std::optional<FlowControl>& flow) override;
    Result<> SetTimeouts(std::chrono::milliseconds writeTotal) override;
    void Purge() override;
    Result<LineStatus> GetStatus() override;
    Result<std::size_t> Read(std::span<std::uint8_t> room) override;
    Result<> Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) override;
    Result<> ReleaseXoff() override;
    void Wait(std::chrono::nanoseconds longest, Awaited awaited) override;
    void Wake() override;
    std::optional<KelText> TakeAdvice() override;

private:
    Result<> Prepare();
    void MakeRaw();
    Result<> CommitMode();
    void EndPace();
    Result<> PumpQueue();
    std::size_t KernelRoom() const;
    bool CountUnsent(std::size_t& count) const;
    Result<> FetchReceived();
    Result<std::size_t> ReadDevice(std::span<std::uint8_t> room);
    LineHolds LookAtModemLines();
    std::chrono::nanoseconds LongestWait(std::chrono::nanoseconds longest) const;

    const PortNames& names;
    const SteadyClock clock;
    int wakeEvent = -1;
    int device = -1;
    LineDriver driver = LineDriver::Other;
    termios2 state = {};
    FlowControl activeFlow;
    StoppedOutput stoppedOutput{clock};
    bool hasModemLines = false;
    LineErrorCounters errorCounters;
    bool modemLineHolds = false; // at the last look, a line that the flow control heeds was off
    bool isReadable = false;     // the last wait ended with news from the device
    std::vector<std::uint8_t> queue;
    // Paced: the driver does not hold the line by itself. Received bytes then wait in `received`, without XOFF and XON.
    bool isPaced = false;
    PacedOutput pace{clock};
    std::vector<std::uint8_t> received;
    std::optional<KelText> advice;
    std::set<KelText> givenAdvice;
};

}
