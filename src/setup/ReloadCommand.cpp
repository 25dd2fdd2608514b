#include "setup/ReloadCommand.h"

#include "base/SetupMessages.h"
#include "files/MachineLock.h"
#include "files/ProgramRequests.h"
#include "setup/SettingsChange.h"

#include <chrono>

namespace tarvin {

namespace {

using namespace std::chrono_literals;

constexpr auto longestAnswer = 10s;

// Without waiting: a program that is just starting reads the new settings anyway.
std::optional<MachineHolder> HolderOf(const Installation& installation, const KelText& machineName) {
    return MachineLock(StoreOf(installation, machineName).FilePath()).Holder(0ms);
}

}

ReloadReply RequestReload(const Installation& installation, const KelText& machineName) {
    const auto holder = HolderOf(installation, machineName);
    const auto reply = [&](KelTextView form, bool isWell) { return ReloadReply{Filled(form, {machineName}), isWell}; };
    if (!holder)
        return reply(text::setupReload::notRunning, true);
    switch (RequestFrom(RequestKind::Reload, holder->reloadAddress, longestAnswer)) {
    case RequestOutcome::Done:
        return reply(text::setupReload::done, true);
    case RequestOutcome::Later:
        return reply(text::setupReload::later, true);
    case RequestOutcome::Refused:
        return reply(text::setupReload::refused, false);
    case RequestOutcome::Silent:
        return reply(text::setupReload::silent, false);
    case RequestOutcome::Gone:
        break;
    }
    return reply(text::setupReload::gone, false);
}

std::optional<KelText> ReloadNeeded(const Installation& installation, const KelText& machineName) {
    const auto holder = HolderOf(installation, machineName);
    if (!holder)
        return std::nullopt;
    const KelText process = ToText(static_cast<std::int64_t>(holder->process));
    return Filled(text::setupReload::needed, {machineName, process});
}

}
