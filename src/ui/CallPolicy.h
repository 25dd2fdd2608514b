#pragma once
// Decides when a user is called: transfers that end, a machine that holds the line or is silent for long, and a link
// that is lost or back. Shows nothing itself. One thread at a time.

#include "base/Clock.h"
#include "engine/EngineSnapshot.h"

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace tarvin {

// Something that a user is called for.
struct Call {
    // A newer call of a kind takes the place of the older one on the screen.
    enum class Kind { TransferEnd, Stop, Link };

    Kind kind = Kind::TransferEnd;
    KelText title;
    KelText text;          // may be empty
    bool isUrgent = false; // a user has to do something
    bool operator==(const Call&) const = default;
};

class CallPolicy {
public:
    // Leaves out records that ended before `startedAt`: they come from an earlier run.
    CallPolicy(KelText machineName, TransferRecord::Time startedAt);

    // The calls that have become due, each once: a transfer that has ended, unless a user has cancelled it; a refused
    // request, and the same one again after a minute at the earliest; a hold or silence of more than `patience` while a
    // file is on its way (0: never); a link that was there and is lost for 3 s, and its return after that. Call it with
    // each snapshot, and at NextDue with the latest one.
    std::vector<Call> Look(const EngineSnapshot& snapshot, Clock::TimePoint now, std::chrono::minutes patience);

    // When the last snapshot would make the next call due. None if time alone makes none due.
    std::optional<Clock::TimePoint> NextDue() const { return nextDue; }

private:
    void LookAtRecords(const EngineSnapshot& snapshot, Clock::TimePoint now, std::vector<Call>& calls);
    void LookAtStops(const EngineSnapshot& snapshot, Clock::TimePoint now, std::chrono::minutes patience,
                     std::vector<Call>& calls);
    void LookAtLink(const EngineSnapshot& snapshot, Clock::TimePoint now, std::vector<Call>& calls);
    bool IsDue(Clock::TimePoint due, Clock::TimePoint now);
    bool IsRepeated(const TransferRecord& record, Clock::TimePoint now);

    const KelText machineName;
    const TransferRecord::Time startedAt;
    std::shared_ptr<const TransferRecords> known; // null before the first look
    std::optional<TransferRecord> lastRefusal;
    Clock::TimePoint lastRefusalCall;
    // The begin of the last hold and silence that has been called.
    std::optional<Clock::TimePoint> calledHold;
    std::optional<Clock::TimePoint> calledSilence;
    bool isLossCalled = false;
    std::optional<Clock::TimePoint> nextDue;
};

}
