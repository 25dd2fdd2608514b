#include "ui/CallPolicy.h"

#include "base/NotificationMessages.h"

#include <algorithm>
#include <utility>

namespace tarvin {

namespace {

using namespace std::chrono_literals;

// An outage that ends sooner is told nowhere.
constexpr auto shortestOutage = 3s;
// A controller may repeat a request that is refused every few seconds.
constexpr auto refusalPause = 1min;

KelTextView NumberOf(const KelText& number) {
    return number.empty() ? KelTextView(text::call::unknownNumber) : KelTextView(number);
}

KelTextView TitleFor(const TransferRecord& record) {
    const bool isSent = record.direction == TransferDirection::ToMachine;
    switch (record.outcome) {
    case TransferOutcome::Failed:
        return isSent ? text::call::sendFailed : text::call::receiveFailed;
    case TransferOutcome::Refused:
        return isSent ? text::call::sendRefused : text::call::receiveRefused;
    case TransferOutcome::Completed:
    case TransferOutcome::Cancelled:
        break;
    }
    return isSent ? text::call::sent : text::call::received;
}

// The mark that a user has seen a failure changes later, and a record that is marked is no new one.
bool IsSameTransfer(const TransferRecord& left, const TransferRecord& right) {
    return left.begin == right.begin && left.end == right.end && left.number == right.number &&
           left.direction == right.direction && left.outcome == right.outcome;
}

bool IsKnown(const std::shared_ptr<const TransferRecords>& known, const TransferRecord& record) {
    return known && std::ranges::any_of(*known, [&](const TransferRecord& old) { return IsSameTransfer(old, record); });
}

}

CallPolicy::CallPolicy(KelText machineName, TransferRecord::Time startedAt)
    : machineName(std::move(machineName)), startedAt(startedAt) {}

std::vector<Call> CallPolicy::Look(const EngineSnapshot& snapshot, Clock::TimePoint now,
                                   std::chrono::minutes patience) {
    nextDue.reset();
    std::vector<Call> calls;
    LookAtRecords(snapshot, now, calls);
    LookAtStops(snapshot, now, patience, calls);
    LookAtLink(snapshot, now, calls);
    return calls;
}

void CallPolicy::LookAtRecords(const EngineSnapshot& snapshot, Clock::TimePoint now, std::vector<Call>& calls) {
    // The engine shares one list between all snapshots until a transfer ends.
    if (snapshot.recent == known)
        return;
    for (const TransferRecord& record : *snapshot.recent) {
        // Records of earlier runs are added when the history has been read, which may be after the first look.
        const bool isNew = record.end >= startedAt && !IsKnown(known, record);
        if (!isNew || record.outcome == TransferOutcome::Cancelled || IsRepeated(record, now))
            continue;
        calls.push_back({Call::Kind::TransferEnd, Filled(TitleFor(record), {machineName, NumberOf(record.number)}),
                         record.reason, record.outcome != TransferOutcome::Completed});
    }
    known = snapshot.recent;
}

bool CallPolicy::IsRepeated(const TransferRecord& record, Clock::TimePoint now) {
    if (record.outcome != TransferOutcome::Refused)
        return false;
    const bool isSame = lastRefusal && lastRefusal->number == record.number &&
                        lastRefusal->direction == record.direction && lastRefusal->reason == record.reason;
    if (isSame && now - lastRefusalCall < refusalPause)
        return true;
    lastRefusal = record;
    lastRefusalCall = now;
    return false;
}

void CallPolicy::LookAtStops(const EngineSnapshot& snapshot, Clock::TimePoint now, std::chrono::minutes patience,
                             std::vector<Call>& calls) {
    if (patience == 0min || !snapshot.progress || snapshot.progress->isWaiting)
        return;
    const auto callFor = [&](KelTextView title) {
        const KelText minutes = ToText(patience.count());
        calls.push_back(
            {Call::Kind::Stop, Filled(title, {machineName, NumberOf(snapshot.progress->number), minutes}), {}, true});
    };
    if (snapshot.heldSince) {
        // The hold is the reason for the silence, so that one is not called as well.
        if (snapshot.heldSince != calledHold && IsDue(*snapshot.heldSince + patience, now)) {
            calledHold = snapshot.heldSince;
            callFor(text::call::held);
        }
    } else if (snapshot.quietSince && snapshot.quietSince != calledSilence &&
               IsDue(*snapshot.quietSince + patience, now)) {
        calledSilence = snapshot.quietSince;
        callFor(text::call::silent);
    }
}

void CallPolicy::LookAtLink(const EngineSnapshot& snapshot, Clock::TimePoint now, std::vector<Call>& calls) {
    const auto callFor = [&](KelTextView title, bool isUrgent) {
        calls.push_back({Call::Kind::Link, Filled(title, {machineName}), {}, isUrgent});
    };
    // A port that has never been open is not lost, nor is the old one when a user has chosen another port.
    if (!snapshot.hasHadLink) {
        isLossCalled = false;
    } else if (snapshot.linkLostSince) {
        if (!isLossCalled && IsDue(*snapshot.linkLostSince + shortestOutage, now)) {
            isLossCalled = true;
            callFor(text::call::linkLost, true);
        }
    } else if (std::exchange(isLossCalled, false)) {
        callFor(text::call::linkReturned, false);
    }
}

bool CallPolicy::IsDue(Clock::TimePoint due, Clock::TimePoint now) {
    if (now >= due)
        return true;
    nextDue = std::min(nextDue.value_or(due), due);
    return false;
}

}
