#pragma once
// The serial port on the Windows communications calls, with a synchronous handle.

#include "base/Mutex.h"
#include "port/CommCallsWindows.h"
#include "port/SerialPort.h"

namespace tarvin {

class SerialPortWindows : public SerialPort {
public:
    explicit SerialPortWindows(const PortNames& names, const CommCalls& calls = {});
    ~SerialPortWindows() override;

    bool IsOpen() const override { return handle != INVALID_HANDLE_VALUE; }
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
    void CancelWrite() override;

private:
    const PortNames& names;
    const CommCalls calls;
    HANDLE handle = INVALID_HANDLE_VALUE;
    HANDLE wakeEvent = nullptr;
    DCB controlBlock = {};
    Mutex writeMutex;
    // The thread that is inside WriteFile, or none.
    HANDLE writingThread GUARDED_BY(writeMutex) = nullptr;
    bool isCancelled GUARDED_BY(writeMutex) = false;
};

}
