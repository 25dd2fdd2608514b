#include "harness/RemotePortPosix.h"

#include <sstream>

#include <doctest/doctest.h>

namespace tarvin::test {

RemotePort::RemotePort() : host("port-host", {.hasInput = true}) {}

Result<> RemotePort::Ask(const std::string& request, std::string* values) {
    host.WriteInput(request + "\n");
    std::string parts[4];
    std::istringstream line(host.ReadLine());
    for (std::string& part : parts)
        std::getline(line, part, '\t');
    REQUIRE_MESSAGE((parts[0] == "0" || parts[0] == "1"), request);
    if (values != nullptr)
        *values = parts[3];
    if (parts[0] == "0")
        return {};
    return Error{FromUtf8(parts[2]), parts[1] == "1"};
}

Result<> RemotePort::Open(const KelText& portName) {
    Result<> result = Ask("open " + ToUtf8(portName));
    isOpen = static_cast<bool>(result);
    return result;
}

Result<> RemotePort::Close() {
    isOpen = false;
    return Ask("close");
}

Result<> RemotePort::SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) {
    return Ask("queues " + std::to_string(inputBytes) + " " + std::to_string(outputBytes));
}

Result<> RemotePort::CommitState(const std::optional<FlowControl>& flow) {
    std::ostringstream request;
    request << "commit";
    if (flow) {
        for (const bool flag : {flow->software, flow->ctsOutput, flow->dsrOutput, flow->dsrSensitivity,
                                flow->rtsHandshake, flow->dtrHandshake})
            request << ' ' << flag;
    }
    return Ask(request.str());
}

Result<> RemotePort::SetTimeouts(std::chrono::milliseconds writeTotal) {
    return Ask("timeouts " + std::to_string(writeTotal.count()));
}

Result<LineStatus> RemotePort::GetStatus() {
    std::string values;
    if (const Result<> result = Ask("status", &values); !result)
        return result.Reason();
    LineStatus status;
    std::istringstream words(values);
    words >> status.errors.parity >> status.errors.framing >> status.errors.overrun >> status.errors.breaks >>
        status.holds.cts >> status.holds.dsr >> status.holds.rlsd >> status.holds.xoff >> status.holds.xoffSent >>
        status.inputCount >> status.outputCount;
    return status;
}

Result<std::size_t> RemotePort::Read(std::span<std::uint8_t> room) {
    std::string hex;
    if (const Result<> result = Ask("read " + std::to_string(room.size()), &hex); !result)
        return result.Reason();
    const std::size_t byteCount = hex.size() / 2;
    REQUIRE(byteCount <= room.size());
    for (std::size_t index = 0; index < byteCount; ++index)
        room[index] = static_cast<std::uint8_t>(std::stoi(hex.substr(index * 2, 2), nullptr, 16));
    return byteCount;
}

Result<> RemotePort::Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) {
    std::ostringstream request;
    request << "write " << std::hex;
    for (const std::uint8_t byte : bytes)
        request << byte / 16 << byte % 16;
    std::string count;
    Result<> result = Ask(request.str(), &count);
    byteCount = std::stoul(count);
    return result;
}

void RemotePort::Wait(std::chrono::nanoseconds longest, Awaited awaited) {
    (void)Ask("wait " + std::to_string(longest.count()) + (awaited == Awaited::BytesToo ? " 1" : " 0"));
}

}
