#include "publish/MachineSummary.h"

#include <algorithm>

namespace tarvin {

namespace {

using namespace std::chrono_literals;

// As on the board: the controller answers within a second.
constexpr auto silenceWorthTelling = 5s;

class Summary {
public:
    Summary(const PublishedStatus& status, const Present& present)
        : status(status), snapshot(status.snapshot), present(present) {}

    MachineSummary Make() {
        summary.errors = snapshot.quality.damaged + snapshot.quality.driverErrors;
        summary.repeats = snapshot.quality.repeats;
        if (snapshot.progress)
            DescribeProgress(*snapshot.progress);
        else
            DescribeRest();
        if (snapshot.heldSince) {
            Tell(u"held", snapshot.heldSince);
            summary.remark = snapshot.notice;
        }
        if (!snapshot.hasLink) {
            Tell(u"no link", snapshot.linkLostSince);
            summary.exitCode = notServed;
            summary.remark = snapshot.port;
        }
        return std::move(summary);
    }

private:
    SystemTime AsSystemTime(Clock::TimePoint time) const {
        return present.system - std::chrono::duration_cast<SystemTime::duration>(present.steady - time);
    }

    void Tell(KelTextView state, const std::optional<Clock::TimePoint>& since) {
        summary.state = state;
        summary.since = since ? std::optional(AsSystemTime(*since)) : std::nullopt;
    }

    void NoteTooLong(const std::optional<Clock::TimePoint>& since) {
        const auto limit = std::chrono::minutes(status.settings.attentionMinutes);
        if (since && limit > 0min && present.steady - *since > limit)
            summary.exitCode = std::max(summary.exitCode, needsAttention);
    }

    void DescribeProgress(const TransferProgress& progress) {
        const bool isDownload = progress.direction == TransferDirection::ToMachine;
        Tell(progress.isWaiting ? u"preparing" : isDownload ? u"sending" : u"receiving", progress.requestedAt);
        summary.number = progress.number;
        summary.byteCount = progress.bytesDone;
        summary.linesPerSecond = progress.linesPerSecond;
        if (progress.bytesTotal > 0)
            summary.percent = static_cast<int>(PercentOf(progress));
        NoteTooLong(snapshot.heldSince);
        // A machine that only takes bytes never sends any.
        if (!progress.isWaiting && snapshot.quietSince && (snapshot.isConversation || !isDownload)) {
            if (present.steady - *snapshot.quietSince >= silenceWorthTelling)
                Tell(u"silent", snapshot.quietSince);
            NoteTooLong(snapshot.quietSince);
        }
        NoteUnseen();
    }

    void DescribeRest() {
        NoteTooLong(snapshot.heldSince);
        summary.state = u"ready";
        summary.since = status.startedAt;
        if (!snapshot.recent->empty())
            summary.since = snapshot.recent->back().end;
        if (const TransferRecord* const failure = NoteUnseen()) {
            summary.state = u"failed";
            summary.since = failure->end;
            summary.number = failure->number;
            summary.remark = failure->reason;
        }
    }

    // The newest failure that no user has seen, or null.
    const TransferRecord* NoteUnseen() {
        const auto& records = *snapshot.recent;
        const auto found = std::find_if(records.rbegin(), records.rend(),
                                        [](const TransferRecord& record) { return record.IsUnseenFailure(); });
        if (found == records.rend())
            return nullptr;
        summary.exitCode = std::max(summary.exitCode, needsAttention);
        summary.remark = u"not seen: " + found->number;
        return &*found;
    }

    const PublishedStatus& status;
    const EngineSnapshot& snapshot;
    const Present& present;
    MachineSummary summary;
};

}

MachineSummary Summarise(const KnownMachine& machine, const Present& present) {
    MachineSummary summary;
    summary.remark = machine.problem;
    switch (machine.run) {
    case KnownMachine::Run::Running:
        return Summary(*machine.status, present).Make();
    case KnownMachine::Run::Died:
        summary.state = u"died";
        summary.exitCode = notServed;
        summary.remark = u"process " + ToText(static_cast<std::int64_t>(machine.status->program.process));
        break;
    case KnownMachine::Run::NotRunning:
        summary.state = u"not running";
        summary.exitCode = notServed;
        break;
    case KnownMachine::Run::Unknown:
        summary.state = u"unknown";
        summary.exitCode = notKnown;
        break;
    }
    return summary;
}

}
