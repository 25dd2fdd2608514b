#include "harness/FakePort.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace tarvin::test {

using namespace std::chrono_literals;

void FakeLine::Arrive(std::string_view bytes) {
    for (const char byte : bytes) {
        if (flow.software && (byte == xon || byte == xoff))
            holds.xoff = byte == xoff;
        else
            input.push_back(byte);
    }
}

void FakeLine::Drain() {
    const auto elapsed = clock.Now() - drainedUntil;
    std::size_t room = output.size();
    if (bytesPerSecond > 0)
        room = std::min(room, static_cast<std::size_t>(elapsed * bytesPerSecond / 1s));
    const bool isHeld = holds.xoff || holds.cts || holds.dsr;
    if (isHeld)
        room = 0;
    sent += output.substr(0, room);
    output.erase(0, room);
    // A byte that is half on the line keeps its time for the next call.
    if (output.empty() || isHeld)
        drainedUntil = clock.Now();
    else if (bytesPerSecond > 0)
        drainedUntil += std::chrono::nanoseconds(1s) * room / bytesPerSecond;
}

std::string FakeLine::TakeSent() {
    Drain();
    return std::exchange(sent, {});
}

Result<> FakePort::Fault(const std::string& operation) const {
    if (!line.isPresent)
        return Error{u"No such device", true};
    const auto found = line.failures.find(operation);
    return found == line.failures.end() ? Result<>() : found->second;
}

Result<> FakePort::Step(const std::string& operation, const std::string& arguments) {
    line.calls.push_back(arguments.empty() ? operation : operation + " " + arguments);
    return Fault(operation);
}

Result<> FakePort::ConfigurationStep(const std::string& operation, const std::string& arguments) {
    assert(isOpen);
    return Step(operation, arguments);
}

Result<> FakePort::Open(const KelText& portName) {
    assert(!isOpen);
    Result<> result = Step("Open", ToUtf8(portName));
    isOpen = static_cast<bool>(result);
    return result;
}

Result<> FakePort::Close() {
    if (!isOpen)
        return {};
    isOpen = false;
    return Step("Close");
}

Result<> FakePort::SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) {
    return ConfigurationStep("SetQueueSizes", std::to_string(inputBytes) + " " + std::to_string(outputBytes));
}

Result<> FakePort::CommitState(const std::optional<FlowControl>& flow) {
    std::string text = "as found";
    if (flow) {
        text = std::string(flow->software ? "software " : "") + (flow->ctsOutput ? "cts " : "") +
               (flow->dsrOutput ? "dsr " : "") + (flow->dsrSensitivity ? "sensitive " : "") +
               (flow->rtsHandshake ? "rts " : "") + (flow->dtrHandshake ? "dtr " : "");
        line.flow = *flow;
    }
    return ConfigurationStep("CommitState", text);
}

Result<> FakePort::SetTimeouts(std::chrono::milliseconds writeTotal) {
    return ConfigurationStep("SetTimeouts", std::to_string(writeTotal.count()));
}

void FakePort::Purge() {
    assert(isOpen);
    line.calls.push_back("Purge");
    line.output.clear();
    line.input.clear();
}

Result<LineStatus> FakePort::GetStatus() {
    assert(isOpen);
    if (const Result<> fault = Fault("GetStatus"); !fault)
        return fault.Reason();
    line.Drain();
    LineStatus status;
    status.holds = line.holds;
    status.inputCount = line.input.size();
    status.outputCount = line.output.size();
    line.Arrive(std::exchange(line.arrivesAfterStatus, {}));
    return status;
}

Result<std::size_t> FakePort::Read(std::span<std::uint8_t> room) {
    assert(isOpen && !room.empty());
    if (const Result<> fault = Fault("Read"); !fault)
        return fault.Reason();
    const std::size_t byteCount = std::min(room.size(), line.input.size());
    std::copy_n(line.input.begin(), byteCount, room.begin());
    line.input.erase(0, byteCount);
    return byteCount;
}

Result<> FakePort::Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) {
    assert(isOpen);
    byteCount = 0;
    if (Result<> fault = Fault("Write"); !fault)
        return fault;
    line.Drain();
    line.clock.Advance(line.writeDuration);
    byteCount = std::min(bytes.size(), line.outputRoom - std::min(line.outputRoom, line.output.size()));
    // As long as the write time-out that the engine sets.
    if (byteCount < bytes.size())
        line.clock.Advance(10s);
    line.output.append(reinterpret_cast<const char*>(bytes.data()), byteCount);
    line.Drain();
    return {};
}

Result<> FakePort::ReleaseXoff() {
    assert(isOpen);
    line.output.clear();
    line.holds.xoff = false;
    return Step("ReleaseXoff");
}

void FakePort::Wait(std::chrono::nanoseconds longest, Awaited awaited) {
    assert(longest >= 0ns);
    const bool hasBytes = awaited == Awaited::BytesToo && !line.input.empty();
    if (!std::exchange(isWoken, false) && !hasBytes)
        line.clock.Advance(std::clamp<std::chrono::nanoseconds>(longest, 100us, 1s));
    line.Drain();
}

}
