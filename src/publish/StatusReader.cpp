// The published status from a document that any program may have written.

#include "base/Process.h"
#include "base/PublishMessages.h"
#include "history/HistoryWords.h"
#include "publish/Json.h"
#include "publish/PublishedStatus.h"
#include "publish/StatusForm.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>

namespace tarvin {

namespace {

constexpr std::int64_t mostProcesses = std::numeric_limits<std::uint32_t>::max();
// No counter of a transfer comes near it, and sums and products by 100 stay within 64 bits.
constexpr std::int64_t largestCount = std::int64_t{1} << 50;

// Reads the members of one object. A missing member or null keeps the value that the target has. One of another type,
// or beyond its range, is noted as the problem of the whole document.
class Members {
public:
    Members(const JsonValue* object, const Present& present, std::optional<KelText>& problem)
        : object(object), present(present), problem(problem) {}

    void Read(KelTextView name, KelText& target) const {
        if (const auto* text = Get<KelText>(name))
            target = text->substr(0, longestStatusText);
    }

    void Read(KelTextView name, bool& target) const {
        if (const auto* flag = Get<bool>(name))
            target = *flag;
    }

    template <class Number>
    void Read(KelTextView name, Number& target, std::int64_t least, std::int64_t most) const {
        const auto* number = Get<std::int64_t>(name);
        if (number == nullptr)
            return;
        if (*number < least || *number > most)
            Refuse(name);
        else
            target = static_cast<Number>(*number);
    }

    void Read(KelTextView name, std::optional<double>& target) const {
        const JsonValue* const value = Find(name);
        if (value == nullptr)
            return;
        const auto* const integer = std::get_if<std::int64_t>(&value->content);
        const auto* const number = std::get_if<double>(&value->content);
        const double rate = integer != nullptr ? static_cast<double>(*integer) : number != nullptr ? *number : -1.0;
        if (rate < 0 || rate > static_cast<double>(largestCount))
            Refuse(name);
        else
            target = rate;
    }

    void Read(KelTextView name, SystemTime& target) const {
        const auto* const text = Get<KelText>(name);
        if (text == nullptr)
            return;
        const auto time = FromUtcText(ToUtf8(*text));
        if (time)
            target = *time;
        else
            Refuse(name);
    }

    // A time of the future would make a duration negative, and comes from a clock that was set back.
    void Read(KelTextView name, std::optional<Clock::TimePoint>& target) const {
        SystemTime time = SystemTime::max();
        Read(name, time);
        if (time == SystemTime::max())
            return;
        const auto age = std::max(present.system - time, SystemTime::duration::zero());
        target = present.steady - std::chrono::duration_cast<Clock::Duration>(age);
    }

    // The value whose word stands there.
    template <class Value, std::size_t count, class ToWord>
    void ReadWord(KelTextView name, Value& target, const Value (&values)[count], ToWord toWord) const {
        const auto* const word = Get<KelText>(name);
        if (word == nullptr)
            return;
        const auto found =
            std::find_if(std::begin(values), std::end(values), [&](Value value) { return *word == toWord(value); });
        if (found == std::end(values))
            Refuse(name);
        else
            target = *found;
    }

    void Require(std::initializer_list<KelTextView> names) const {
        for (const KelTextView name : names) {
            if (Find(name) == nullptr)
                Refuse(name);
        }
    }

    // The members of an object below this one. All of them are missing if it is missing itself.
    Members Inner(KelTextView name) const {
        const JsonValue* const value = Find(name);
        if (value != nullptr && !std::holds_alternative<JsonValue::Object>(value->content))
            Refuse(name);
        return {value, present, problem};
    }

    const JsonValue::Array* Elements(KelTextView name) const { return Get<JsonValue::Array>(name); }
    bool Has(KelTextView name) const { return Find(name) != nullptr; }

private:
    const JsonValue* Find(KelTextView name) const {
        const JsonValue* const value = object == nullptr ? nullptr : object->Find(name);
        return value == nullptr || std::holds_alternative<std::monostate>(value->content) ? nullptr : value;
    }

    template <class Type>
    const Type* Get(KelTextView name) const {
        const JsonValue* const value = Find(name);
        if (value == nullptr)
            return nullptr;
        const auto* const typed = std::get_if<Type>(&value->content);
        if (typed == nullptr)
            Refuse(name);
        return typed;
    }

    void Refuse(KelTextView name) const {
        if (!problem)
            problem = Filled(text::publish::badMember, {KelText(name)});
    }

    const JsonValue* object;
    const Present& present;
    std::optional<KelText>& problem;
};

KelText Name(const char* name) {
    return FromUtf8(name);
}

constexpr MachineHolder::Kind kinds[] = {MachineHolder::Kind::Service, MachineHolder::Kind::Window};
constexpr TransferDirection directions[] = {TransferDirection::ToMachine, TransferDirection::FromMachine};

void ReadProgram(const Members& members, PublishedStatus& status) {
    members.Require({u"kind", u"process", u"computer"});
    members.ReadWord(u"kind", status.program.kind, kinds,
                     [](auto kind) { return kind == MachineHolder::Kind::Service ? serviceWord : windowWord; });
    members.Read(u"version", status.programVersion);
    members.Read(u"process", status.program.process, 1, mostProcesses);
    members.Read(u"process_start", status.processStart);
    members.Read(u"user", status.program.user);
    members.Read(u"computer", status.program.computer);
    members.Read(u"started", status.startedAt);
}

void ReadSettings(const Members& members, DownloadSettings& settings) {
    for (const auto& [name, field] : settingsTexts)
        members.Read(Name(name), settings.*field);
    bool heedsCts = true;
    bool heedsDsr = true;
    bool isByHand = false;
    members.Read(u"cts_handshake", heedsCts);
    members.Read(u"dsr_handshake", heedsDsr);
    members.Read(u"by_hand", isByHand);
    settings.ctsFlow = heedsCts ? 1 : 0;
    settings.dsrFlow = heedsDsr ? 1 : 0;
    settings.controllerKind = isByHand ? controllerByHand : controllerConversation;
    members.Read(u"attention_minutes", settings.attentionMinutes, std::numeric_limits<std::int32_t>::min(),
                 std::numeric_limits<std::int32_t>::max());
}

void ReadLink(const Members& members, EngineSnapshot& snapshot) {
    members.Require({u"is_open"});
    members.Read(u"is_open", snapshot.hasLink);
    members.Read(u"was_open", snapshot.hasHadLink);
    members.Read(u"port", snapshot.port);
    members.Read(u"title", snapshot.linkTitle);
    members.Read(u"lost_since", snapshot.linkLostSince);
}

void ReadLine(const Members& members, EngineSnapshot& snapshot) {
    LineHolds& holds = snapshot.lamps.holds;
    members.Read(u"received", snapshot.lamps.received);
    members.Read(u"transmitted", snapshot.lamps.transmitted);
    members.Read(u"cts_hold", holds.cts);
    members.Read(u"dsr_hold", holds.dsr);
    members.Read(u"rls_hold", holds.rlsd);
    members.Read(u"xoff_hold", holds.xoff);
    members.Read(u"xoff_sent", holds.xoffSent);
    members.Read(u"held_since", snapshot.heldSince);
    members.Read(u"quiet_since", snapshot.quietSince);
    members.Read(u"damaged", snapshot.quality.damaged, 0, largestCount);
    members.Read(u"repeats", snapshot.quality.repeats, 0, largestCount);
    members.Read(u"driver_errors", snapshot.quality.driverErrors, 0, largestCount);
}

TransferProgress ReadTransfer(const Members& members, const Present& present) {
    TransferProgress progress;
    members.Require({u"direction", u"number"});
    members.ReadWord(u"direction", progress.direction, directions,
                     [](TransferDirection direction) { return WordsFor(direction); });
    members.Read(u"is_waiting", progress.isWaiting);
    members.Read(u"number", progress.number);
    members.Read(u"path", progress.path);
    members.Read(u"comment", progress.comment);
    std::optional<Clock::TimePoint> begin;
    members.Read(u"begin", begin);
    progress.requestedAt = begin.value_or(present.steady);
    members.Read(u"bytes", progress.bytesDone, 0, largestCount);
    members.Read(u"bytes_total", progress.bytesTotal, 0, largestCount);
    members.Read(u"lines", progress.linesDone, 0, largestCount);
    members.Read(u"lines_total", progress.linesTotal, 0, largestCount);
    members.Read(u"bytes_per_second", progress.bytesPerSecond);
    members.Read(u"lines_per_second", progress.linesPerSecond);
    return progress;
}

TransferRecord ReadRecord(const Members& members, const KelText& machine) {
    TransferRecord record;
    record.machine = machine;
    members.Require({u"direction", u"outcome"});
    members.Read(u"number", record.number);
    members.Read(u"path", record.path);
    members.ReadWord(u"direction", record.direction, directions,
                     [](TransferDirection direction) { return WordsFor(direction); });
    members.ReadWord(u"outcome", record.outcome, allOutcomes, [](TransferOutcome outcome) { return WordFor(outcome); });
    members.Read(u"reason", record.reason);
    members.Read(u"begin", record.begin);
    members.Read(u"end", record.end);
    for (const auto& [name, field] : recordNumbers)
        members.Read(Name(name), record.*field, 0, largestCount);
    KelText sha256;
    members.Read(u"sha256", sha256);
    record.sha256 = ToUtf8(sha256);
    members.Read(u"seen", record.isSeen);
    return record;
}

}

Result<PublishedStatus> FromJson(std::string_view document, const Present& present) {
    const auto root = ReadJson(document);
    if (!root)
        return root.Reason();
    std::optional<KelText> problem;
    const Members members(&*root, present, problem);
    KelText form;
    std::int64_t version = 0;
    members.Read(u"format", form);
    members.Read(u"version", version, 0, largestCount);
    if (form != statusFormName)
        return Error{text::publish::otherForm};
    if (version != statusFormVersion)
        return Error{Filled(text::publish::otherVersion, {ToText(version)})};
    PublishedStatus status;
    EngineSnapshot& snapshot = status.snapshot;
    members.Require({u"machine", u"installation", u"program", u"link"});
    members.Read(u"machine", status.machine);
    members.Read(u"installation", status.installation);
    ReadProgram(members.Inner(u"program"), status);
    members.Read(u"changed", status.changedAt);
    ReadSettings(members.Inner(u"settings"), status.settings);
    ReadLink(members.Inner(u"link"), snapshot);
    std::int32_t state = 0;
    members.Read(u"state", state, 0, std::numeric_limits<std::int32_t>::max());
    snapshot.transferState = static_cast<TransferState>(state);
    members.Read(u"status", snapshot.statusLine);
    members.Read(u"notice", snapshot.notice);
    members.Read(u"announcement", snapshot.announcement);
    members.Read(u"caption", snapshot.caption);
    ReadLine(members.Inner(u"line"), snapshot);
    if (members.Has(u"transfer"))
        snapshot.progress = ReadTransfer(members.Inner(u"transfer"), present);
    members.Read(u"bar_position", snapshot.progressPosition, 0, largestCount);
    members.Read(u"bar_range", snapshot.progressRange, 0, largestCount);
    members.Read(u"last_path", snapshot.transferPath);
    members.Read(u"asks_by_number", snapshot.isConversation);
    members.Read(u"comms_log", snapshot.isCommsLogOn);
    TransferRecords records;
    if (const auto* const elements = members.Elements(u"recent")) {
        for (const JsonValue& element : *elements) {
            if (records.size() == mostPublishedRecords)
                break;
            records.push_back(ReadRecord(Members(&element, present, problem), status.machine));
        }
    }
    snapshot.recent = std::make_shared<const TransferRecords>(std::move(records));
    if (problem)
        return Error{*problem};
    return status;
}

ProgramState StateOfProgram(const PublishedStatus& status) {
    if (status.program.computer != ComputerName())
        return ProgramState::Unknown;
    const KelText mark = ProcessStartMark(status.program.process);
    // Where the system keeps the start of the process for itself, its number has to do.
    if (mark.empty() || status.processStart.empty())
        return IsProcessRunning(status.program.process) ? ProgramState::Running : ProgramState::Ended;
    return mark == status.processStart ? ProgramState::Running : ProgramState::Ended;
}

}
