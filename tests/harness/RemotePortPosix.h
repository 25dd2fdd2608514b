#pragma once
// The Windows serial port, inside the program port-host under Wine. One thread uses it, apart from Wake and
// CancelWrite.

#include "harness/ChildProcessPosix.h"
#include "port/SerialPort.h"

#include <string>

namespace tarvin::test {

class RemotePort : public SerialPort {
public:
    RemotePort();

    bool IsOpen() const override { return isOpen; }
    Result<> Open(const KelText& portName) override;
    Result<> Close() override;
    Result<> SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) override;
    Result<> FetchState() override { return Ask("fetch"); }
    Result<> ApplyMode(const std::string& mode) override { return Ask("mode " + mode); }
    Result<> CommitState(const std::optional<FlowControl>& flow) override;
    Result<> SetTimeouts(std::chrono::milliseconds writeTotal) override;
    void Purge() override { (void)Ask("purge"); }
    Result<LineStatus> GetStatus() override;
    Result<std::size_t> Read(std::span<std::uint8_t> room) override;
    Result<> Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) override;
    Result<> ReleaseXoff() override { return Ask("release"); }
    void Wait(std::chrono::nanoseconds longest, Awaited awaited) override;
    void Wake() override { host.WriteInput("wake\n"); }
    void CancelWrite() override { host.WriteInput("cancel\n"); }

private:
    // Has port-host do the request. `values` gets the numbers or bytes of its answer, after a failure too.
    Result<> Ask(const std::string& request, std::string* values = nullptr);

    ChildProcess host;
    bool isOpen = false;
};

}
