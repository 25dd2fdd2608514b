#include "campaign/Judge.h"

#include "campaign/CampaignFrame.h"

#include <algorithm>

namespace tarvin::campaign {

namespace {

// The text at the index, or none beyond the end.
std::optional<std::string> At(const std::vector<std::string>& lines, std::size_t index) {
    return index < lines.size() ? std::optional(lines[index]) : std::nullopt;
}

std::string Shown(const std::optional<std::string>& line) {
    return line ? "\"" + Readable(*line) + "\"" : "nothing";
}

std::size_t FirstDifference(const TransferRecord& record) {
    const auto [expected, actual] =
        std::mismatch(record.expected.begin(), record.expected.end(), record.actual.begin(), record.actual.end());
    return static_cast<std::size_t>(expected - record.expected.begin());
}

std::string TextBehind(std::string_view code, const std::string& message) {
    const std::size_t found = message.find(code);
    if (found == std::string::npos)
        return {};
    std::string text = message.substr(found + code.size());
    if (!text.empty())
        text.pop_back();
    return text;
}

// Whether the receiver of the message had a wrong checksum in its hands. The controller's may mean nothing; the
// program's always count. The program drops bytes that do not print, so a message is judged without them.
bool CouldBeTold(const TransferRecord& record, const LineEvent& event) {
    const bool isChecksumMeant = event.direction == Direction::ToController || record.sendsChecksums;
    return isChecksumMeant && !IsRight(PrintableOf(event.bytes));
}

Cause CauseOf(const TransferRecord& record, const LineEvent& event, Cause told) {
    return CouldBeTold(record, event) ? told : Cause::RightChecksum;
}

// Zeros in front of a number do not count.
std::string WithoutZeros(std::string number) {
    number.erase(0, number.find_first_not_of('0'));
    return number;
}

// A request that has arrived with another number.
bool IsWrongRequest(const TransferRecord& record, const LineEvent& event) {
    const auto code = record.kind == TransferKind::Upload ? code::uploadRequest : code::downloadRequest;
    const std::string message = PrintableOf(event.bytes);
    return event.direction == Direction::ToProgram && message.find(code) != std::string::npos &&
           WithoutZeros(TextBehind(code, message)) != WithoutZeros(record.number);
}

// A data line that has arrived with the text that stands at the first difference. The program stores no empty lines, so
// a line that has arrived empty is missing.
bool IsWrongData(const TransferRecord& record, const LineEvent& event, std::size_t difference) {
    const bool isUpload = record.kind == TransferKind::Upload;
    const auto code = isUpload ? code::uploadData : code::downloadData;
    const std::string message = PrintableOf(event.bytes);
    if (event.direction != (isUpload ? Direction::ToProgram : Direction::ToController) ||
        message.find(code) == std::string::npos)
        return false;
    const std::string payload = TextBehind(code, message);
    const auto actual = At(record.actual, difference);
    const bool isMissing = actual == At(record.expected, difference + 1);
    return payload == actual || (isUpload && payload.empty() && isMissing);
}

bool EndsWith(const std::vector<std::string>& lines, const std::vector<std::string>& end) {
    return lines.size() >= end.size() && std::equal(end.rbegin(), end.rend(), lines.rbegin());
}

// Looks at all attempts: an old program appends the lines of a later one to those of the first.
Cause FindCause(const TransferRecord& record, std::size_t difference) {
    for (const LineEvent& event : record.traffic) {
        const bool isDamagedArrival = event.kind == LineEvent::Kind::Arrived && event.isDamaged;
        if (isDamagedArrival && IsWrongData(record, event, difference))
            return CauseOf(record, event, Cause::DataChecksum);
        // Another file differs from its first line on.
        if (isDamagedArrival && difference == 0 && IsWrongRequest(record, event))
            return CauseOf(record, event, Cause::RequestChecksum);
    }
    const auto actual = At(record.actual, difference);
    const bool isRestarted = record.kind == TransferKind::Upload && record.controller.restartCount > 0;
    if (isRestarted && (actual == At(record.expected, 0) || EndsWith(record.actual, record.expected)))
        return Cause::EarlierAttempt;
    const bool hasDelay = std::any_of(record.traffic.begin(), record.traffic.end(), [](const LineEvent& event) {
        return event.damage.starts_with(NameOf(DamageKind::Delay));
    });
    const bool isDoubled = difference > 0 && actual == At(record.expected, difference - 1);
    if (record.controller.repeatCount > 0 && (isDoubled || !hasDelay))
        return Cause::Repeat;
    return hasDelay ? Cause::OutOfStep : Cause::Unknown;
}

Verdict VerdictOf(const TransferRecord& record) {
    const bool doesControllerKnow = !record.controller.isDone;
    const bool doesProgramKnow = record.program == ProgramWord::Errors;
    if (doesControllerKnow && doesProgramKnow)
        return Verdict::BothKnow;
    if (doesControllerKnow)
        return Verdict::ControllerAloneKnows;
    if (doesProgramKnow)
        return Verdict::ProgramAloneKnows;
    return record.isWhole ? Verdict::Identical : Verdict::SilentDifference;
}

}

Judgement Judge(const TransferRecord& record) {
    Judgement judgement = {VerdictOf(record), std::nullopt, {}};
    if (record.isWhole)
        return judgement;
    const std::size_t difference = FirstDifference(record);
    judgement.detail = "line " + std::to_string(difference + 1) + " is " + Shown(At(record.actual, difference)) +
                       " in place of " + Shown(At(record.expected, difference));
    if (judgement.verdict == Verdict::SilentDifference)
        judgement.cause = FindCause(record, difference);
    return judgement;
}

}
