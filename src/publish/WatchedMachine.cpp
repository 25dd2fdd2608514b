#include "publish/WatchedMachine.h"

#include "base/PublishMessages.h"

#include <cassert>
#include <utility>

namespace tarvin {

namespace {

// A window that watches has switched off everything that leads to an order.
void RefuseOrder() {
    assert(false);
}

// The state without a program: nothing is on its way, and the last transfers stay.
EngineSnapshot Unserved(EngineSnapshot last, const KelText& machineName) {
    EngineSnapshot next;
    next.recent = last.recent;
    next.port = last.port;
    next.transferState = TransferState::NoLink;
    next.statusLine = text::watching::notServed;
    next.caption = next.linkTitle = machineName;
    return next;
}

}

WatchedMachine::WatchedMachine(std::filesystem::path installation, KelText machineName, EngineEvents& events,
                               const Clock& clock)
    : installation(std::move(installation)),
      machineName(std::move(machineName)),
      events(events),
      clock(clock),
      anchor(PresentOf(clock)) {}

// The two clocks run apart by a little at each look. A snapshot that is read twice must be the same one, so the
// distance stays as it is until the clock is set.
Present WatchedMachine::PresentByAnchor() {
    const Present real = PresentOf(clock);
    const auto passed = std::chrono::duration_cast<SystemTime::duration>(real.steady - anchor.steady);
    const auto drift = real.system - (anchor.system + passed);
    constexpr auto mostDrift = std::chrono::seconds(1);
    if (drift > mostDrift || drift < -mostDrift) {
        anchor = real;
        return real;
    }
    return {real.steady, anchor.system + passed};
}

void WatchedMachine::Look() {
    KnownMachine machine = FindMachine(installation, machineName, PresentByAnchor());
    const bool isServed = machine.status && machine.run != KnownMachine::Run::Died;
    EngineSnapshot next = isServed ? machine.status->snapshot : Unserved(snapshot, machineName);
    if (isServed) {
        lastServer = machine.status->program;
        if (std::exchange(settings, machine.status->settings) != machine.status->settings)
            events.SettingsChanged(settings);
    }
    KelText nextRemark = RemarkOn(machine);
    Show(std::move(next), std::move(nextRemark));
}

void WatchedMachine::Show(EngineSnapshot next, KelText nextRemark) {
    for (ActionButton* button : {&next.sendFile, &next.receiveFile, &next.test})
        *button = {true, false};
    // The window tells a new list of transfers by its address.
    if (*next.recent == *snapshot.recent)
        next.recent = snapshot.recent;
    if (next == snapshot && nextRemark == remark)
        return;
    snapshot = std::move(next);
    remark = std::move(nextRemark);
    events.SnapshotChanged(snapshot);
}

KelText WatchedMachine::RemarkOn(const KnownMachine& machine) const {
    const KelText process = ToText(static_cast<std::int64_t>(lastServer.process));
    const bool isService = lastServer.kind == MachineHolder::Kind::Service;
    if (machine.run == KnownMachine::Run::Died)
        return Filled(text::watching::died, {lastServer.computer, process});
    if (machine.run == KnownMachine::Run::NotRunning)
        return Filled(text::watching::ended, {lastServer.computer, process});
    if (!machine.status)
        return Filled(text::watching::unreadable, {machine.problem});
    return Filled(isService ? text::watching::servedByService : text::watching::servedByWindow,
                  {lastServer.computer, process});
}

void WatchedMachine::ApplySettings(DownloadSettings) {
    RefuseOrder();
}

void WatchedMachine::KeepSettings(DownloadSettings) {
    RefuseOrder();
}

void WatchedMachine::SetHandshakes(bool, bool) {
    RefuseOrder();
}

void WatchedMachine::StartCommsLog(std::filesystem::path) {
    RefuseOrder();
}

void WatchedMachine::StopCommsLog() {
    RefuseOrder();
}

void WatchedMachine::SendFile(std::filesystem::path) {
    RefuseOrder();
}

void WatchedMachine::ReceiveFile(std::filesystem::path) {
    RefuseOrder();
}

void WatchedMachine::CompleteUpload() {
    RefuseOrder();
}

void WatchedMachine::CancelUpload() {
    RefuseOrder();
}

void WatchedMachine::CancelDownload() {
    RefuseOrder();
}

void WatchedMachine::Announce(KelText) {
    RefuseOrder();
}

void WatchedMachine::MarkSeen(KelText, TransferDirection) {
    RefuseOrder();
}

void WatchedMachine::ResetLink() {
    RefuseOrder();
}

void WatchedMachine::SendXoffTest() {
    RefuseOrder();
}

void WatchedMachine::StartLoopbackTest() {
    RefuseOrder();
}

}
