#include "harness/RemotePortPosix.h"

#include <sstream>

#include <doctest/doctest.h>

namespace tarvin::test {

RemotePort::RemotePort() : host("port-host", {.hasInput = true}) {}

PortError RemotePort::Ask(const std::string& request, std::string* result) {
    host.WriteInput(request + "\n");
    std::string parts[4];
    std::istringstream line(host.ReadLine());
    for (std::string& part : parts)
        std::getline(line, part, '\t');
    REQUIRE_MESSAGE((parts[0] == "0" || parts[0] == "1"), request);
    if (result != nullptr)
        *result = parts[3];
    return {parts[0] == "1", parts[1] == "1", FromUtf8(parts[2])};
}

PortError RemotePort::Open(const KelText& portName) {
    PortError error = Ask("open " + ToUtf8(portName));
    isOpen = !error;
    return error;
}

PortError RemotePort::Close() {
    isOpen = false;
    return Ask("close");
}

PortError RemotePort::SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) {
    return Ask("queues " + std::to_string(inputBytes) + " " + std::to_string(outputBytes));
}

PortError RemotePort::CommitState(const std::optional<FlowControl>& flow) {
    std::ostringstream request;
    request << "commit";
    if (flow) {
        for (const bool flag : {flow->software, flow->ctsOutput, flow->dsrOutput, flow->dsrSensitivity,
                                flow->rtsHandshake, flow->dtrHandshake})
            request << ' ' << flag;
    }
    return Ask(request.str());
}

PortError RemotePort::SetTimeouts(std::chrono::milliseconds writeTotal) {
    return Ask("timeouts " + std::to_string(writeTotal.count()));
}

PortError RemotePort::GetStatus(LineStatus& status) {
    std::string result;
    PortError error = Ask("status", &result);
    std::istringstream words(result);
    words >> status.errors >> status.ctsHold >> status.dsrHold >> status.rlsdHold >> status.xoffHold >>
        status.xoffSent >> status.inputCount >> status.outputCount;
    return error;
}

PortError RemotePort::Read(std::span<std::uint8_t> room, std::size_t& byteCount) {
    std::string hex;
    PortError error = Ask("read " + std::to_string(room.size()), &hex);
    byteCount = hex.size() / 2;
    REQUIRE(byteCount <= room.size());
    for (std::size_t index = 0; index < byteCount; ++index)
        room[index] = static_cast<std::uint8_t>(std::stoi(hex.substr(index * 2, 2), nullptr, 16));
    return error;
}

PortError RemotePort::Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) {
    std::ostringstream request;
    request << "write " << std::hex;
    for (const std::uint8_t byte : bytes)
        request << byte / 16 << byte % 16;
    std::string count;
    PortError error = Ask(request.str(), &count);
    byteCount = std::stoul(count);
    return error;
}

void RemotePort::Wait(std::chrono::nanoseconds longest, Awaited awaited) {
    Ask("wait " + std::to_string(longest.count()) + (awaited == Awaited::BytesToo ? " 1" : " 0"));
}

}
