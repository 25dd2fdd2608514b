#pragma once
// The serial port on termios. Keeps a driver queue of its own in front of non-blocking writes, so that a write is
// always taken whole and never waits for a held line. Monitor thread only, apart from Wake.

#include "port/SerialPort.h"

#include <chrono>
#include <vector>

#include <asm/termbits.h>

namespace tarvin {

class SerialPortPosix : public SerialPort {
public:
    explicit SerialPortPosix(const PortNames& portNames);
    ~SerialPortPosix() override;

    bool IsOpen() const override { return device >= 0; }
    PortError Open(const KelText& portName) override;
    PortError Close() override;
    // The kernel's queues have their own sizes.
    PortError SetQueueSizes(std::size_t, std::size_t) override { return {}; }
    PortError FetchState() override;
    PortError ApplyMode(const std::string& mode) override;
    PortError CommitState(const std::optional<FlowControl>& flow) override;
    // Reads and writes return at once as it is.
    PortError SetTimeouts(std::chrono::milliseconds) override { return {}; }
    void Purge() override;
    PortError GetStatus(LineStatus& status) override;
    PortError Read(std::span<std::uint8_t> room, std::size_t& byteCount) override;
    PortError Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) override;
    void Wait(std::chrono::nanoseconds longest, Awaited awaited) override;
    void Wake() override;

private:
    using TimePoint = std::chrono::steady_clock::time_point;

    PortError Prepare();
    void MakeRaw();
    PortError PumpQueue();
    std::size_t KernelRoom() const;
    bool CountUnsent(std::size_t& count) const;
    void LookAtModemLines(LineStatus& status);
    bool IsStopped(std::size_t kernelCount);
    bool IsStoppedWhileEmpty();

    const PortNames& names;
    int wakeEvent = -1;
    int device = -1;
    termios2 state = {};
    FlowControl activeFlow;
    int bitsPerSecond = 1;
    bool hasModemLines = false;
    bool dsrHolds = false;
    bool isReadable = false;
    std::vector<std::uint8_t> queue;
    std::size_t lastKernelCount = 0;
    TimePoint lastProgress;
    TimePoint lastLookAtStop;
    bool wasStopped = false;
};

}
