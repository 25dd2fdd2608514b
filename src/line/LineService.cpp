#include "line/LineService.h"

#include <algorithm>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto slowWrite = 5s;
constexpr std::chrono::nanoseconds shortestLook = 1ms;
constexpr std::chrono::nanoseconds longestLook = 10ms;
constexpr int bitsPerCharacter = 10;

}

LineService::LineService(std::unique_ptr<SerialPort> port, const Clock& clock, LineRecorder& recorder,
                         LineClient& client, const ThreadOwner& thread)
    : clock(clock), recorder(recorder), client(client), thread(thread), link(std::move(port)), transmit(recorder) {}

void LineService::OpenPort(const DownloadSettings& settings, const KelText& applicationTitle) {
    thread.AssertOwned();
    receive.Clear();
    bitsPerSecond = BitsPerSecond(settings);
    for (const PortProblem& problem : link.Open(settings, applicationTitle))
        client.OnPortProblem(problem);
}

bool LineService::Reopen(const DownloadSettings& settings, const KelText& applicationTitle) {
    thread.AssertOwned();
    return link.Reopen(settings, applicationTitle);
}

void LineService::ClosePort() {
    thread.AssertOwned();
    link.Close();
}

// The order matters. Reading comes first, so that an answer goes out in the look that read the question. The client's
// turn to send more comes after the write, when the driver has room again.
bool LineService::Look() {
    thread.AssertOwned();
    if (!link.IsOpen())
        return false;
    const auto present = link.Port().GetStatus();
    if (!present) {
        NoteFailure(LineStep::Status, present.Reason());
        return false;
    }
    link.NoteSuccess(LineStep::Status);
    NoteStatus(*present);
    if (status.inputCount > 0)
        ReadData();
    if (status.outputCount == 0 && !status.holds.xoff && link.IsOpen()) {
        WriteQueued();
        if (link.IsOpen() && !holds.xoff)
            client.OnLineFree();
    }
    return link.IsOpen() && IsWriteDue();
}

void LineService::NoteStatus(const LineStatus& present) {
    recorder.HoldsChanged(status.holds, present.holds);
    status = present;
    const bool xoffByBytes = holds.xoff;
    holds = present.holds;
    if (!link.DriverTellsXoffHold())
        holds.xoff = xoffByBytes;
}

void LineService::ReadData() {
    const auto room = receive.Room();
    if (room.empty()) {
        isOverrun = true;
        receive.Clear();
        client.OnOverrun();
        return;
    }
    if (std::exchange(isOverrun, false))
        client.OnOverrunEnded();
    const auto byteCount = link.Port().Read(room);
    if (!byteCount) {
        NoteFailure(LineStep::Read, byteCount.Reason());
        return;
    }
    link.NoteSuccess(LineStep::Read);
    if (*byteCount == 0)
        return;
    receive.Commit(*byteCount);
    NoteReceived(room.first(*byteCount));
    client.OnReceived(receive);
}

void LineService::NoteReceived(std::span<const std::uint8_t> bytes) {
    activity.received = true;
    for (const std::uint8_t byte : bytes) {
        if (byte == xon || byte == xoff)
            holds.xoff = byte == xoff;
    }
    recorder.Received(bytes);
}

bool LineService::IsWriteDue() const {
    const bool isFree = status.outputCount == 0 && !status.holds.xoff && !holds.xoff && !link.IsFailing();
    return isFree && transmit.IsWritePending() && (transmit.AwaitsDrain() || transmit.IsDue(clock.Now()));
}

// Requires that the driver holds no bytes.
void LineService::WriteQueued() {
    if (!transmit.IsWritePending())
        return;
    const auto now = clock.Now();
    transmit.DriverDrained(now);
    if (!transmit.IsDue(now))
        return;
    if (!transmit.IsEmpty()) {
        // An XOFF may have arrived since the status was taken. Where the driver obeys it, it holds the bytes by itself.
        if (!link.DriverTellsXoffHold())
            ReadData();
        if (!holds.xoff && link.IsOpen())
            WriteData();
    }
    transmit.EndWrite();
}

void LineService::WriteData() {
    const auto started = clock.Now();
    const std::size_t pendingCount = transmit.Pending().size();
    std::size_t byteCount = 0;
    const auto written = link.Port().Write(transmit.Pending(), byteCount);
    transmit.Consume(byteCount);
    // A slow write was held up. The lamp stays dark because the line was not working.
    if (byteCount == pendingCount && clock.Now() - started < slowWrite)
        activity.transmitted = true;
    // How much of it the driver still holds is known at the next look.
    status.outputCount += byteCount;
    if (!written)
        NoteFailure(LineStep::Write, written.Reason());
    else if (byteCount > 0)
        link.NoteSuccess(LineStep::Write);
}

void LineService::NoteFailure(LineStep step, const Error& error) {
    if (const auto problem = link.NoteFailure(step, error))
        client.OnPortProblem(*problem);
    if (link.IsOpen())
        return;
    // Questions and answers that were on their way are stale when the device comes back.
    receive.Clear();
    transmit.Clear();
    status = {};
    holds = {};
    activity = {};
    client.OnLinkLost();
}

void LineService::Wait(std::chrono::nanoseconds longest, bool awaitsDrain) {
    thread.AssertOwned();
    const bool isFailing = link.IsFailing();
    if (isFailing)
        longest = std::min(longest, longestLook);
    else if (link.IsOpen() && (awaitsDrain || transmit.IsWritePending()))
        longest = std::min(longest, TimeToNextLook());
    // A port that has bytes but cannot be read would end every wait at once.
    link.Port().Wait(std::max(longest, std::chrono::nanoseconds::zero()),
                     isFailing ? SerialPort::Awaited::WakeOnly : SerialPort::Awaited::BytesToo);
}

std::chrono::nanoseconds LineService::TimeToNextLook() const {
    if (status.outputCount == 0) {
        const auto due = transmit.DueTime();
        return due ? std::min<std::chrono::nanoseconds>(longestLook, *due - clock.Now()) : longestLook;
    }
    // No event tells that the driver has sent its last byte, so it is asked at the time when that should be.
    const auto lineTime =
        std::chrono::nanoseconds(1s) * static_cast<std::int64_t>(status.outputCount) * bitsPerCharacter / bitsPerSecond;
    return std::clamp(lineTime, shortestLook, longestLook);
}

}
