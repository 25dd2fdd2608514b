#include "line/LineService.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto slowWrite = 5s;
constexpr std::chrono::nanoseconds shortestLook = 1ms;
constexpr std::chrono::nanoseconds longestLook = 10ms;
constexpr int bitsPerCharacter = 10;

}

LineService::LineService(std::unique_ptr<SerialPort> port, const Clock& timeSource, LineRecorder& lineRecorder,
                         LineClient& lineClient, PortLink::ShowMessage showMessage)
    : clock(timeSource),
      recorder(lineRecorder),
      client(lineClient),
      link(std::move(port), std::move(showMessage)),
      transmit(lineRecorder) {}

void LineService::OpenPort(const DownloadSettings& settings, const KelText& title) {
    receive.Clear();
    bitsPerSecond = std::max(std::atoi(ToUtf8(settings.baudRate).c_str()), 1);
    link.OpenPort(settings, title, false);
}

void LineService::NoteOutage(LineStep step, const Error& error) {
    link.ReportOutage(step, error);
    if (link.IsOpen())
        return;
    receive.Clear();
    transmit.Clear();
    status = {};
    lamps = {};
    client.OnLinkLost();
}

bool LineService::CheckLineStatus() {
    if (!link.IsOpen())
        return false;
    const LineStatus previous = status;
    const auto present = link.Port().GetStatus();
    if (!present) {
        NoteOutage(LineStep::Status, present.Reason());
        return false;
    }
    status = *present;
    link.EndOutage(LineStep::Status);
    NoteStatus(previous);
    if (status.inputCount > 0)
        ReadData();
    if (status.outputCount == 0 && !status.holds.xoff && link.IsOpen()) {
        const std::size_t written = FlushOutput();
        if (link.IsOpen())
            client.OnLineFree();
        // Until the next look nobody knows how much of it is still in the driver.
        status.outputCount += written;
    }
    const std::size_t held = receive.Count();
    if (held > 0)
        client.OnReceived();
    // A client that took some of it has come one message further, and the next may be there already.
    return receive.Count() != held || IsWriteDue();
}

bool LineService::IsWriteDue() const {
    const bool isFree = status.outputCount == 0 && !status.holds.xoff && !lamps.xoffHold && !link.IsFailing();
    return isFree && transmit.IsWritePending() && (transmit.AwaitsDrain() || transmit.IsDue(clock.Now()));
}

void LineService::NoteStatus(const LineStatus& previous) {
    recorder.HoldsChanged(previous, status);
    lamps.ctsHold = status.holds.cts;
    lamps.dsrHold = status.holds.dsr;
    lamps.rlsdHold = status.holds.rlsd;
    lamps.xoffSent = status.holds.xoffSent;
    if (link.DriverTellsXoffHold())
        lamps.xoffHold = status.holds.xoff;
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
        NoteOutage(LineStep::Read, byteCount.Reason());
        return;
    }
    link.EndOutage(LineStep::Read);
    if (*byteCount == 0)
        return;
    receive.Commit(*byteCount);
    NoteReceived(room.first(*byteCount));
    client.OnReceived();
}

void LineService::NoteReceived(std::span<const std::uint8_t> bytes) {
    lamps.received = true;
    for (const std::uint8_t byte : bytes) {
        if (byte == xon || byte == xoff)
            lamps.xoffHold = byte == xoff;
    }
    recorder.Received(bytes);
}

std::size_t LineService::FlushOutput() {
    if (!transmit.IsWritePending())
        return 0;
    const auto now = clock.Now();
    transmit.DriverDrained(now);
    if (!transmit.IsDue(now))
        return 0;
    const std::size_t written = WriteData();
    transmit.SetWritePending(false);
    return written;
}

std::size_t LineService::WriteData() {
    if (transmit.IsEmpty())
        return 0;
    const auto started = clock.Now();
    // So that an XOFF that has just arrived is seen, where no driver sees to it.
    if (!link.DriverTellsXoffHold())
        ReadData();
    if (lamps.xoffHold || !link.IsOpen())
        return 0;
    const std::size_t pending = transmit.Pending().size();
    std::size_t written = 0;
    const Result<> result = link.Port().Write(transmit.Pending(), written);
    transmit.Consume(written);
    // A write that took that long was held up, and its bytes are no sign of a line that works.
    if (written == pending && clock.Now() - started < slowWrite)
        lamps.transmitted = true;
    if (!result)
        NoteOutage(LineStep::Write, result.Reason());
    else if (written > 0)
        link.EndOutage(LineStep::Write);
    return written;
}

void LineService::Wait(std::chrono::nanoseconds longest, bool isWatched) {
    const bool isFailing = link.IsFailing();
    if (isFailing)
        longest = std::min(longest, longestLook);
    else if (link.IsOpen() && (isWatched || transmit.IsWritePending()))
        longest = std::min(longest, NextLook(clock.Now()));
    link.Port().Wait(std::max(longest, std::chrono::nanoseconds::zero()),
                     isFailing ? SerialPort::Awaited::WakeOnly : SerialPort::Awaited::BytesToo);
}

std::chrono::nanoseconds LineService::NextLook(Clock::TimePoint now) const {
    if (status.outputCount == 0) {
        const auto due = transmit.DueTime();
        return due ? std::min<std::chrono::nanoseconds>(longestLook, *due - now) : longestLook;
    }
    // Nothing tells when the driver has sent its last byte; so it is asked when that should be.
    const auto lineTime =
        std::chrono::nanoseconds(1s) * static_cast<std::int64_t>(status.outputCount) * bitsPerCharacter / bitsPerSecond;
    return std::clamp(lineTime, shortestLook, longestLook);
}

}
