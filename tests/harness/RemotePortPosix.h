#pragma once
// The Windows serial port, inside the program port-host under Wine. One thread, apart from Wake and CancelWrite.

#include "harness/ChildProcessPosix.h"
#include "port/SerialPort.h"

#include <string>

namespace tarvin::test {

class RemotePort : public SerialPort {
public:
    RemotePort();

    bool IsOpen() const override { return isOpen; }
    PortError Open(const KelText& portName) override;
    PortError Close() override;
    PortError SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) override;
    PortError FetchState() override { return Ask("fetch"); }
    PortError ApplyMode(const std::string& mode) override { return Ask("mode " + mode); }
    PortError CommitState(const std::optional<FlowControl>& flow) override;
    PortError SetTimeouts(std::chrono::milliseconds writeTotal) override;
    void Purge() override { Ask("purge"); }
    PortError GetStatus(LineStatus& status) override;
    PortError Read(std::span<std::uint8_t> room, std::size_t& byteCount) override;
    PortError Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) override;
    void Wait(std::chrono::nanoseconds longest, Awaited awaited) override;
    void Wake() override { host.WriteInput("wake\n"); }
    void CancelWrite() override { host.WriteInput("cancel\n"); }

private:
    // Has it done there; `result` is what it gave.
    PortError Ask(const std::string& request, std::string* result = nullptr);

    ChildProcess host;
    bool isOpen = false;
};

}
