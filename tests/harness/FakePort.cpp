#include "harness/FakePort.h"

#include <algorithm>
#include <utility>

namespace tarvin::test {

using namespace std::chrono_literals;

void FakeLine::Arrive(std::string_view bytes) {
    for (const char byte : bytes) {
        if (flow.software && (byte == 0x11 || byte == 0x13))
            holds.xoffHold = byte == 0x13;
        else
            input.push_back(byte);
    }
}

void FakeLine::Drain() {
    const auto elapsed = clock.Now() - drainedUntil;
    std::size_t room = output.size();
    if (bytesPerSecond > 0)
        room = std::min(room, static_cast<std::size_t>(elapsed * bytesPerSecond / 1s));
    const bool isHeld = holds.xoffHold || holds.ctsHold || holds.dsrHold;
    if (isHeld)
        room = 0;
    sent += output.substr(0, room);
    output.erase(0, room);
    // The time of a byte that is half on the line is kept for the next look.
    if (output.empty() || isHeld)
        drainedUntil = clock.Now();
    else if (bytesPerSecond > 0)
        drainedUntil += std::chrono::nanoseconds(1s) * room / bytesPerSecond;
}

std::string FakeLine::TakeSent() {
    Drain();
    return std::exchange(sent, {});
}

PortError FakePort::Fault(const std::string& operation) const {
    if (!line.isPresent)
        return {true, true, u"No such device"};
    const auto found = line.failures.find(operation);
    return found == line.failures.end() ? PortError() : found->second;
}

PortError FakePort::Step(const std::string& operation, const std::string& arguments) {
    line.calls.push_back(arguments.empty() ? operation : operation + " " + arguments);
    return Fault(operation);
}

PortError FakePort::Open(const KelText& portName) {
    PortError error = Step("Open", ToUtf8(portName));
    if (isOpen)
        return {true, false, u"Device or resource busy"};
    isOpen = !error;
    return error;
}

PortError FakePort::Close() {
    isOpen = false;
    return Step("Close");
}

PortError FakePort::SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) {
    return Step("SetQueueSizes", std::to_string(inputBytes) + " " + std::to_string(outputBytes));
}

PortError FakePort::CommitState(const std::optional<FlowControl>& flow) {
    std::string text = "as found";
    if (flow) {
        text = std::string(flow->software ? "software " : "") + (flow->ctsOutput ? "cts " : "") +
               (flow->dsrOutput ? "dsr " : "") + (flow->dsrSensitivity ? "sensitive " : "") +
               (flow->rtsHandshake ? "rts " : "") + (flow->dtrHandshake ? "dtr " : "");
        line.flow = *flow;
    }
    return Step("CommitState", text);
}

PortError FakePort::SetTimeouts(std::chrono::milliseconds writeTotal) {
    return Step("SetTimeouts", std::to_string(writeTotal.count()));
}

void FakePort::Purge() {
    line.calls.push_back("Purge");
    line.output.clear();
    line.input.clear();
}

PortError FakePort::GetStatus(LineStatus& status) {
    if (PortError error = Fault("GetStatus"))
        return error;
    line.Drain();
    status = line.holds;
    status.inputCount = line.input.size();
    status.outputCount = line.output.size();
    return {};
}

PortError FakePort::Read(std::span<std::uint8_t> room, std::size_t& byteCount) {
    byteCount = 0;
    if (PortError error = Fault("Read"))
        return error;
    byteCount = std::min(room.size(), line.input.size());
    std::copy_n(line.input.begin(), byteCount, room.begin());
    line.input.erase(0, byteCount);
    return {};
}

PortError FakePort::Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) {
    byteCount = 0;
    if (PortError error = Fault("Write"))
        return error;
    line.Drain();
    line.clock.Advance(line.writeDuration);
    byteCount = std::min(bytes.size(), line.outputRoom - std::min(line.outputRoom, line.output.size()));
    if (byteCount < bytes.size())
        line.clock.Advance(10s);
    line.output.append(reinterpret_cast<const char*>(bytes.data()), byteCount);
    line.Drain();
    return {};
}

void FakePort::Wait(std::chrono::nanoseconds longest, Awaited awaited) {
    const bool hasBytes = awaited == Awaited::BytesToo && !line.input.empty();
    if (!std::exchange(isWoken, false) && !hasBytes)
        line.clock.Advance(std::clamp<std::chrono::nanoseconds>(longest, 100us, 1s));
    line.Drain();
}

}
