#include "line/LineService.h"

#include <algorithm>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto slowWrite = 5s;
constexpr auto oldHold = 10s;
// In bytes. A controller waits for its answer, so no more than one or two frames of 1000 ever wait on a line that
// flows.
constexpr std::size_t mostPending = 8000;
constexpr std::chrono::nanoseconds shortestLook = 1ms;
constexpr std::chrono::nanoseconds longestLook = 10ms;
constexpr int bitsPerCharacter = 10;

}

LineService::LineService(std::unique_ptr<SerialPort> port, const Clock& clock, LineRecorder& recorder,
                         LineClient& client, const ThreadOwner& thread)
    : clock(clock), recorder(recorder), client(client), thread(thread), link(std::move(port)), transmit(recorder) {}

void LineService::OpenPort(const DownloadSettings& settings, const KelText& applicationTitle) {
    thread.AssertOwned();
    DropEverything();
    bitsPerSecond = BitsPerSecond(settings);
    TellOpening(link.Open(settings, applicationTitle));
}

bool LineService::Reopen(const DownloadSettings& settings, const KelText& applicationTitle) {
    thread.AssertOwned();
    DropEverything();
    TellOpening(link.Reopen(settings, applicationTitle));
    return link.IsOpen();
}

void LineService::TellOpening(const std::vector<PortProblem>& problems) {
    for (const PortProblem& problem : problems)
        client.OnPortProblem(problem);
    if (const auto advice = link.Port().TakeAdvice())
        client.OnPortAdvice(*advice);
}

void LineService::ClosePort() {
    thread.AssertOwned();
    link.Close();
}

void LineService::DropEverything() {
    receive.Clear();
    transmit.Clear();
    inDriver.clear();
    status = {};
    SetHolds({});
    activity = {};
    quietSince = clock.Now();
    heldUpSince.reset();
}

void LineService::SendText(std::string_view text) {
    if (link.IsOpen())
        transmit.AppendText(text);
}

void LineService::SendChar(std::uint8_t byte, bool continuation) {
    if (link.IsOpen())
        transmit.AppendChar(byte, continuation);
}

void LineService::SendBlock(int askedCount, std::span<const std::uint8_t> bytes, Clock::Duration delay) {
    if (link.IsOpen())
        transmit.AppendBlock(askedCount, bytes, delay);
}

// A line that takes nothing needs no flag for it: the adapter is full, or the far end of a pseudo-terminal reads
// nothing.
bool LineService::IsHeldUp() const {
    return (IsHeld() && !IsDrained()) || transmit.Pending().size() > mostPending;
}

void LineService::EndOldHold() {
    if (!holds.xoff || clock.Now() - xoffSince < oldHold)
        return;
    if (link.DriverTellsXoffHold()) {
        const std::size_t unsentCount = std::min(status.outputCount, inDriver.size());
        if (const auto released = link.Port().ReleaseXoff(); !released) {
            NoteFailure(LineStep::Write, released.Reason());
            return;
        }
        // As if XON had come: the bytes that the driver has dropped go out too.
        transmit.GiveBack(std::span(inDriver).last(unsentCount));
        inDriver.clear();
        status.holds.xoff = false;
        status.outputCount = 0;
    }
    SetXoffHold(false);
}

void LineService::ForgetXoff() {
    if (!link.DriverTellsXoffHold())
        SetXoffHold(false);
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
    // Not more than the status has counted: it has told the errors of these characters, and of no later ones.
    if (status.inputCount > 0)
        ReadData(status.inputCount);
    if (link.IsOpen() && status.outputCount == 0 && !IsHeld()) {
        WriteQueued();
        if (link.IsOpen() && !IsHeld())
            client.OnLineFree();
    }
    if (status.outputCount > 0)
        quietSince = clock.Now();
    if (!IsHeldUp())
        heldUpSince.reset();
    else if (!heldUpSince)
        heldUpSince = clock.Now();
    return IsWriteDue();
}

void LineService::NoteStatus(const LineStatus& present) {
    status = present;
    receive.NoteErrors(present.errors.parity + present.errors.framing + present.errors.overrun);
    if (status.outputCount == 0)
        inDriver.clear();
    LineHolds effective = present.holds;
    if (!link.DriverTellsXoffHold())
        effective.xoff = holds.xoff;
    SetHolds(effective);
}

void LineService::SetHolds(const LineHolds& present) {
    recorder.HoldsChanged(holds, present);
    if (present.xoff && !holds.xoff)
        xoffSince = clock.Now();
    holds = present;
}

void LineService::SetXoffHold(bool isHeld) {
    LineHolds present = holds;
    present.xoff = isHeld;
    SetHolds(present);
}

void LineService::ReadData(std::size_t mostBytes) {
    const auto room = receive.Room().first(std::min(receive.Room().size(), mostBytes));
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
    quietSince = clock.Now();
    recorder.Received(bytes);
    // Where the driver obeys XOFF, it keeps both bytes to itself.
    if (link.DriverTellsXoffHold())
        return;
    bool isHeld = holds.xoff;
    for (const std::uint8_t byte : bytes) {
        if (byte == xon || byte == xoff)
            isHeld = byte == xoff;
    }
    SetXoffHold(isHeld);
}

bool LineService::IsWriteDue() const {
    return link.IsOpen() && status.outputCount == 0 && !IsHeld() && !link.IsFailing() && !transmit.IsEmpty() &&
           (transmit.AwaitsDrain() || transmit.IsDue(clock.Now()));
}

// Requires that the driver holds no bytes and that nothing holds the line.
void LineService::WriteQueued() {
    if (transmit.IsEmpty())
        return;
    const auto now = clock.Now();
    transmit.DriverDrained(now);
    if (!transmit.IsDue(now))
        return;
    // An XOFF may have arrived since the status was taken. Where the driver obeys it, it holds the bytes by itself.
    if (!link.DriverTellsXoffHold())
        ReadData(ReceiveBuffer::capacity);
    if (!IsHeld() && link.IsOpen())
        WriteData();
}

void LineService::WriteData() {
    const auto started = clock.Now();
    const std::size_t pendingCount = transmit.Pending().size();
    std::size_t byteCount = 0;
    const auto written = link.Port().Write(transmit.Pending(), byteCount);
    const auto taken = transmit.Pending().first(byteCount);
    inDriver.insert(inDriver.end(), taken.begin(), taken.end());
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
    client.OnPortProblem(link.NoteFailure(step, error));
    if (link.IsOpen())
        return;
    // Questions and answers that were on their way are stale when the device comes back.
    DropEverything();
    client.OnLinkLost();
}

void LineService::Wait(std::chrono::nanoseconds longest, bool isWatched) {
    thread.AssertOwned();
    const bool isFailing = link.IsFailing();
    if (isFailing)
        longest = std::min(longest, longestLook);
    else if (link.IsOpen() && (isWatched || !IsDrained()))
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
