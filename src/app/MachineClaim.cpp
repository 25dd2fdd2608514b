#include "app/MachineClaim.h"

#include "app/Program.h"
#include "base/NotificationMessages.h"
#include "base/Process.h"
#include "files/ProgramRequests.h"
#include "settings/SettingsStore.h"

#include <chrono>
#include <cstdio>
#include <thread>

namespace tarvin {

namespace {

using namespace std::chrono_literals;

constexpr auto answerWait = 3s;
// A window that closes may take a while for its logs.
constexpr auto closingWait = 5s;
constexpr auto pollPeriod = 50ms;

MachineHolder Self(MachineHolder::Kind kind, const KelText& raiseAddress, const KelText& reloadAddress) {
    return {kind, OwnProcessId(), UserName(), ComputerName(), raiseAddress, reloadAddress};
}

// Ready if there is nothing to wait for: the lock is taken, or cannot be had at all.
bool IsTaken(MachineLock& lock, const MachineHolder& self, const KelText& machineName) {
    const auto taken = lock.Take(self);
    if (taken)
        return true;
    if (taken.Reason().isBusy)
        return false;
    const KelText told = Filled(text::machine::noLock, {machineName, taken.Reason().text});
    std::fprintf(stderr, "%s\n", ToUtf8(told).c_str());
    return true;
}

KelText Describe(const std::optional<MachineHolder>& holder, const KelText& machineName) {
    if (!holder)
        return Filled(text::machine::servedByUnknown, {machineName});
    const KelText process = ToText(static_cast<std::int64_t>(holder->process));
    const KelTextView form =
        holder->kind == MachineHolder::Kind::Service ? text::machine::servedByService : text::machine::servedByWindow;
    return Filled(form, {machineName, process, holder->user, holder->computer});
}

bool CanBeRaised(const MachineHolder& holder, const MachineHolder& self) {
    return holder.kind == MachineHolder::Kind::Window && !holder.raiseAddress.empty() && holder.user == self.user &&
           holder.computer == self.computer;
}

std::filesystem::path SettingsFileOf(const Program& program) {
    return SettingsStore(program.Place().Folder(), program.MachineName(), {}).FilePath();
}

}

MachineClaim ClaimForService(const Program& program, const KelText& reloadAddress) {
    MachineClaim claim;
    auto lock = std::make_unique<MachineLock>(SettingsFileOf(program));
    if (IsTaken(*lock, Self(MachineHolder::Kind::Service, {}, reloadAddress), program.MachineName()))
        claim.lock = std::move(lock);
    else
        claim.problem = [holder = lock->Holder(), name = program.MachineName()] { return Describe(holder, name); };
    return claim;
}

MachineClaim ClaimForWindow(const Program& program, const KelText& raiseAddress, const KelText& reloadAddress) {
    const MachineHolder self = Self(MachineHolder::Kind::Window, raiseAddress, reloadAddress);
    const auto deadline = std::chrono::steady_clock::now() + closingWait;
    MachineClaim claim;
    auto lock = std::make_unique<MachineLock>(SettingsFileOf(program));
    for (;;) {
        if (IsTaken(*lock, self, program.MachineName())) {
            claim.lock = std::move(lock);
            return claim;
        }
        const auto holder = lock->Holder();
        const bool canBeRaised = holder && CanBeRaised(*holder, self);
        const auto outcome =
            canBeRaised ? RequestFrom(RequestKind::Raise, holder->raiseAddress, answerWait) : RequestOutcome::Silent;
        if (outcome == RequestOutcome::Done) {
            claim.isRaised = true;
            return claim;
        }
        // One that is going leaves the machine free in a moment.
        if ((holder && outcome == RequestOutcome::Silent) || std::chrono::steady_clock::now() > deadline) {
            claim.holder = holder;
            const bool isSilent = canBeRaised && outcome == RequestOutcome::Silent;
            claim.problem = [holder, isSilent, name = program.MachineName()] {
                return isSilent ? Filled(text::machine::windowIsSilent,
                                         {name, ToText(static_cast<std::int64_t>(holder->process))})
                                : Describe(holder, name);
            };
            return claim;
        }
        std::this_thread::sleep_for(pollPeriod);
    }
}

}
