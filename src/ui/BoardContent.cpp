#include "ui/BoardContent.h"

#include "base/BoardMessages.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

namespace board = text::board;

// The controller answers within a second. An operator who watches should know after a few more.
constexpr auto silenceWorthTelling = 5s;
// A longer past is not what the operator stands here for.
constexpr std::size_t mostRecents = 12;

KelText OneDecimal(double number) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.1f", number);
    return FromUtf8(digits);
}

KelText NumberOf(const TransferRecord& record) {
    return record.number.empty() ? KelText(board::noNumber) : record.number;
}

KelText Arrow(TransferDirection direction) {
    return direction == TransferDirection::ToMachine ? u"\u2192" : u"\u2190";
}

KelText RecentText(const TransferRecord& record, LocalTimeWriter localTime) {
    KelText outcome;
    switch (record.outcome) {
    case TransferOutcome::Completed:
        outcome = Filled(board::recentDone, {GroupedText(record.byteCount), DurationText(record.end - record.begin)});
        break;
    case TransferOutcome::Failed:
        outcome = record.bytesTotal > 0
                      ? Filled(board::recentStoppedAt, {ToText(PercentDone(record.byteCount, record.bytesTotal))})
                      : Filled(board::recentStoppedBehind, {GroupedText(record.lineCount)});
        break;
    case TransferOutcome::Cancelled:
        outcome = board::recentCancelled;
        break;
    case TransferOutcome::Refused:
        outcome = Filled(board::recentRefused, {record.reason});
        break;
    }
    return Filled(board::recent, {localTime(record.end), NumberOf(record), Arrow(record.direction) + u" " + outcome});
}

class Description {
public:
    Description(const EngineSnapshot& snapshot, Clock::TimePoint now, LocalTimeWriter localTime)
        : snapshot(snapshot), now(now), localTime(localTime) {}

    BoardContent Make() {
        AddRecents();
        const auto& records = *snapshot.recent;
        if (snapshot.progress)
            DescribeProgress(*snapshot.progress);
        else if (snapshot.linkLostSince)
            DescribeNoLink();
        else if (snapshot.heldSince)
            DescribeHeld();
        else if (content.unseen)
            DescribeFailure(*content.unseen);
        else if (!records.empty())
            DescribeEnd(records.back());
        else
            DescribeNothing();
        return std::move(content);
    }

private:
    KelText Since(Clock::TimePoint start) const { return DurationText(now - start); }

    void AddFact(KelTextView caption, KelText value) { content.facts.push_back({KelText(caption), std::move(value)}); }

    void AddRecents() {
        for (auto record = snapshot.recent->rbegin(); record != snapshot.recent->rend(); ++record) {
            if (content.recents.size() < mostRecents)
                content.recents.push_back({record->outcome, RecentText(*record, localTime)});
            if (!content.unseen && record->IsUnseenFailure())
                content.unseen = *record;
        }
    }

    // Failures that are not what the board shows now.
    void NoteUnseen() {
        std::vector<KelText> numbers;
        for (auto record = snapshot.recent->rbegin(); record != snapshot.recent->rend(); ++record) {
            if (record->IsUnseenFailure() &&
                std::find(numbers.begin(), numbers.end(), NumberOf(*record)) == numbers.end())
                numbers.push_back(NumberOf(*record));
        }
        KelText list;
        for (const KelText& number : numbers)
            list += (list.empty() ? u"" : u", ") + number;
        if (!list.empty())
            content.unseenNote = Filled(board::unseen, {list});
    }

    bool IsSilent() const {
        return snapshot.quietSince && now - *snapshot.quietSince >= silenceWorthTelling &&
               !snapshot.progress->isWaiting &&
               // A machine that only takes bytes never sends any.
               (snapshot.isConversation || snapshot.progress->direction == TransferDirection::FromMachine);
    }

    void DescribeProgress(const TransferProgress& progress) {
        NoteUnseen();
        content.number = progress.number;
        content.comment = progress.comment;
        content.state = BoardState::Running;
        const bool isDownload = progress.direction == TransferDirection::ToMachine;
        content.title = progress.isWaiting ? board::preparing : isDownload ? board::sending : board::receiving;
        if (snapshot.heldSince) {
            content.state = BoardState::Held;
            content.title = Filled(board::heldFor, {snapshot.notice, Since(*snapshot.heldSince)});
        } else if (IsSilent()) {
            content.state = BoardState::Silent;
            content.title = Filled(board::silentFor, {Since(*snapshot.quietSince)});
        }
        if (progress.isWaiting)
            return;
        DescribeShare(progress);
        KelText lines = GroupedText(progress.linesDone);
        if (progress.linesTotal > 0)
            lines = Filled(board::linesOf, {lines, GroupedText(progress.linesTotal)});
        else if (progress.bytesTotal == 0)
            lines = Filled(board::linesAndBytes, {lines, GroupedText(progress.bytesDone)});
        AddFact(board::lines, lines);
        AddFact(board::time, TimeText(progress));
        AddFact(board::speed, SpeedText(progress));
    }

    void DescribeShare(const TransferProgress& progress) {
        if (progress.bytesTotal > 0) {
            const int percent = PercentDone(progress.bytesDone, progress.bytesTotal);
            content.share = Filled(board::percent, {ToText(percent)});
            content.bar =
                std::min(1.0, static_cast<double>(progress.bytesDone) / static_cast<double>(progress.bytesTotal));
            return;
        }
        // One way along the bar for each 2000 bytes.
        constexpr std::int64_t bytesForOneWay = 2000;
        content.bar = static_cast<double>(progress.bytesDone % bytesForOneWay) / static_cast<double>(bytesForOneWay);
        content.isBarMoving = true;
    }

    KelText TimeText(const TransferProgress& progress) const {
        const KelText gone = Since(progress.requestedAt);
        const double speed = progress.bytesPerSecond.value_or(0);
        if (progress.bytesTotal == 0 || speed <= 0 || content.state != BoardState::Running)
            return Filled(board::timeGone, {gone});
        const auto bytesLeft = static_cast<double>(std::max<std::int64_t>(progress.bytesTotal - progress.bytesDone, 0));
        // Such an estimate comes from a line that has almost stopped, and says nothing.
        constexpr double longest = 100.0 * 3600;
        const double left = bytesLeft / speed;
        if (left > longest)
            return Filled(board::timeGone, {gone});
        return Filled(board::timeLeft, {gone, DurationText(std::chrono::seconds(std::llround(left)))});
    }

    KelText SpeedText(const TransferProgress& progress) const {
        const LineQuality& quality = snapshot.quality;
        const KelText repeats = ToText(quality.repeats);
        KelText speed = progress.linesPerSecond && content.state == BoardState::Running
                            ? Filled(board::speedAndRepeats, {OneDecimal(*progress.linesPerSecond), repeats})
                            : Filled(board::noSpeedAndRepeats, {u"", repeats});
        const std::int64_t damaged = quality.damaged + quality.driverErrors;
        return damaged == 0 ? speed : Filled(board::andDamaged, {speed, ToText(damaged)});
    }

    void DescribeNoLink() {
        NoteUnseen();
        content.state = BoardState::NoLink;
        content.number = snapshot.port;
        content.title = Filled(snapshot.hasHadLink ? board::portGone : board::portNotOpen,
                               {snapshot.port, Since(*snapshot.linkLostSince)});
    }

    // An answer waits, and no file is on its way.
    void DescribeHeld() {
        NoteUnseen();
        content.state = BoardState::Held;
        content.title = Filled(board::heldFor, {snapshot.notice, Since(*snapshot.heldSince)});
    }

    void DescribeEnd(const TransferRecord& record) {
        content.number = NumberOf(record);
        const KelText time = localTime(record.end);
        const bool isDownload = record.direction == TransferDirection::ToMachine;
        switch (record.outcome) {
        case TransferOutcome::Refused:
            DescribeFailure(record);
            return;
        case TransferOutcome::Completed:
            content.state = BoardState::Done;
            content.title = Filled(isDownload ? board::sent : board::received, {time});
            content.share = Filled(board::percent, {u"100"});
            content.bar = 1.0;
            content.comment = record.reason;
            break;
        case TransferOutcome::Failed: // and seen
        case TransferOutcome::Cancelled:
            content.title =
                record.outcome == TransferOutcome::Cancelled ? Filled(board::cancelled, {time}) : KelText(board::ready);
            if (record.outcome == TransferOutcome::Failed) {
                content.number.clear();
                return;
            }
            break;
        }
        AddFact(board::lines,
                Filled(board::linesAndBytes, {GroupedText(record.lineCount), GroupedText(record.byteCount)}));
        AddFact(board::time, DurationText(record.end - record.begin));
        AddQuality(record);
    }

    void AddQuality(const TransferRecord& record) {
        if (record.repeats + record.damaged + record.driverErrors > 0)
            AddFact(board::speed,
                    Filled(board::andDamaged, {Filled(board::noSpeedAndRepeats, {u"", ToText(record.repeats)}),
                                               ToText(record.damaged + record.driverErrors)}));
    }

    void DescribeFailure(const TransferRecord& record) {
        content.state = BoardState::Failed;
        content.number = NumberOf(record);
        const KelText time = localTime(record.end);
        const bool isDownload = record.direction == TransferDirection::ToMachine;
        const bool isRefusal = record.outcome == TransferOutcome::Refused;
        if (isRefusal)
            content.title = Filled(board::refused, {time});
        else if (record.linesTotal > 0)
            content.title =
                Filled(board::failedAtLineOf, {GroupedText(record.lineCount), GroupedText(record.linesTotal), time});
        else if (record.lineCount > 0)
            content.title = Filled(board::failedAtLine, {GroupedText(record.lineCount), u"", time});
        else
            content.title = Filled(board::failed, {time});
        if (!isRefusal && record.bytesTotal > 0) {
            content.share = Filled(board::percent, {ToText(PercentDone(record.byteCount, record.bytesTotal))});
            content.bar = std::min(1.0, static_cast<double>(record.byteCount) / static_cast<double>(record.bytesTotal));
        }
        AddFact(board::why, record.reason.empty() ? KelText(board::notSaid) : record.reason);
        const bool hasPart = isDownload && !isRefusal && record.lineCount > 0;
        AddFact(board::machineHas, hasPart ? board::partDoNotCut : isDownload ? board::nothingNew : board::stillAll);
        AddFact(board::whatToDo, !isDownload ? board::sendAgain
                                 : isRefusal ? board::mendAndAskAgain
                                             : board::deleteAndAskAgain);
        if (!isRefusal)
            AddQuality(record);
    }

    void DescribeNothing() {
        content.isEmpty = true;
        content.title = board::ready;
    }

    const EngineSnapshot& snapshot;
    const Clock::TimePoint now;
    const LocalTimeWriter localTime;
    BoardContent content;
};

}

KelText BoardContent::Spoken() const {
    KelText spoken;
    const auto add = [&spoken](const KelText& part) {
        if (!part.empty())
            spoken += (spoken.empty() ? u"" : u". ") + part;
    };
    for (const KelText& part : {title, number, share, comment})
        add(part);
    for (const Fact& fact : facts)
        add(fact.caption + u": " + fact.value);
    add(unseenNote);
    for (const Recent& recent : recents)
        add(recent.text);
    return spoken;
}

BoardContent DescribeBoard(const EngineSnapshot& snapshot, Clock::TimePoint now, LocalTimeWriter localTime) {
    return Description(snapshot, now, localTime).Make();
}

bool IsTimeShown(const EngineSnapshot& snapshot) {
    return snapshot.progress.has_value() || snapshot.linkLostSince.has_value() || snapshot.heldSince.has_value();
}

int PercentDone(std::int64_t done, std::int64_t total) {
    // Only the end itself is 100 %: the last line may still have to be repeated.
    return static_cast<int>(std::clamp<std::int64_t>(done * 100 / total, 0, 99));
}

KelText GroupedText(std::int64_t number) {
    KelText digits = ToText(number);
    const std::size_t first = number < 0 ? 1 : 0;
    constexpr std::size_t group = 3;
    // From the end, so that earlier places stay.
    for (std::size_t place = digits.size(); place > first + group;) {
        place -= group;
        digits.insert(place, 1, u'\u00A0');
    }
    return digits;
}

}
