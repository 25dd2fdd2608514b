#pragma once
// The serial port on the Windows communications calls, with a synchronous handle. Monitor thread only, apart from Wake
// and CancelWrite.

#include "port/CommCallsWindows.h"
#include "port/SerialPort.h"

#include <mutex>

namespace tarvin {

class SerialPortWindows : public SerialPort {
public:
    explicit SerialPortWindows(const PortNames& portNames, const CommCalls& commCalls = {});
    ~SerialPortWindows() override;

    bool IsOpen() const override { return handle != INVALID_HANDLE_VALUE; }
    PortError Open(const KelText& portName) override;
    PortError Close() override;
    PortError SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) override;
    PortError FetchState() override;
    PortError ApplyMode(const std::string& mode) override;
    PortError CommitState(const std::optional<FlowControl>& flow) override;
    PortError SetTimeouts(std::chrono::milliseconds writeTotal) override;
    void Purge() override;
    PortError GetStatus(LineStatus& status) override;
    PortError Read(std::span<std::uint8_t> room, std::size_t& byteCount) override;
    PortError Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) override;
    void Wait(std::chrono::nanoseconds longest, Awaited awaited) override;
    void Wake() override;
    void CancelWrite() override;

private:
    const PortNames& names;
    const CommCalls calls;
    HANDLE handle = INVALID_HANDLE_VALUE;
    HANDLE wakeEvent = nullptr;
    // The thread inside WriteFile, for as long as it is there, and whether it is to be there at all.
    std::mutex writeMutex;
    HANDLE writingThread = nullptr;
    bool isCancelled = false;
    DCB controlBlock = {};
};

}
