#include "campaign/Tally.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <system_error>

namespace tarvin::campaign {

namespace {

// In front of a row that is a part of a row above.
constexpr std::string_view partMark = "  ";
// In the order of Count.
constexpr std::string_view titles[] = {
    "transfers",
    "  hit by damage",
    "identical, and both sides content",
    "error that both sides know",
    "error that the controller alone knows",
    "error that the program alone knows",
    "silent difference",
    "  damaged data line, wrong checksum",
    "  damaged file number, wrong checksum",
    "  damaged, right checksum or none sent",
    "  the controller's repeat taken as new",
    "  lines of an attempt given up before",
    "  out of step after a late answer",
    "  cause not found",
    "\"Completed\" for a file that is not whole",
    "part of a program under its final name",
    "another file overwritten",
    "another file created",
    "program mute after the transfer",
    "  of these after a stray XOFF",
    "messages repeated or asked for again",
    "transfers begun anew",
    "error codes received",
    "milliseconds in all",
};
static_assert(std::size(titles) == static_cast<std::size_t>(Count::End));

constexpr std::size_t titleWidth = 42;
constexpr std::size_t numberWidth = 10;
constexpr char firstLine[] = "tarvin-campaign 1";

std::string RightAligned(std::string text) {
    return std::string(numberWidth - std::min(numberWidth, text.size()), ' ') + text;
}

Count CountOf(Verdict verdict) {
    switch (verdict) {
    case Verdict::Identical:
        return Count::Identical;
    case Verdict::BothKnow:
        return Count::BothKnow;
    case Verdict::ControllerAloneKnows:
        return Count::ControllerAloneKnows;
    case Verdict::ProgramAloneKnows:
        return Count::ProgramAloneKnows;
    case Verdict::SilentDifference:
        return Count::Silent;
    }
    return Count::End;
}

Count CountOf(Cause cause) {
    switch (cause) {
    case Cause::DataChecksum:
        return Count::SilentDataChecksum;
    case Cause::RequestChecksum:
        return Count::SilentRequestChecksum;
    case Cause::RightChecksum:
        return Count::SilentRightChecksum;
    case Cause::Repeat:
        return Count::SilentRepeat;
    case Cause::EarlierAttempt:
        return Count::SilentEarlierAttempt;
    case Cause::OutOfStep:
        return Count::SilentOutOfStep;
    case Cause::Unknown:
        return Count::SilentUnknown;
    }
    return Count::End;
}

}

std::string_view TitleOf(Cause cause) {
    return titles[static_cast<std::size_t>(CountOf(cause))].substr(partMark.size());
}

void Tally::Add(TransferKind kind, Count count, std::uint64_t amount) {
    sums[static_cast<std::size_t>(kind)][static_cast<std::size_t>(count)] += amount;
}

void Tally::Add(TransferKind kind, const Judgement& judgement) {
    Add(kind, Count::Transfers);
    Add(kind, CountOf(judgement.verdict));
    if (judgement.cause)
        Add(kind, CountOf(*judgement.cause));
}

std::uint64_t Tally::Of(TransferKind kind, Count count) const {
    return sums[static_cast<std::size_t>(kind)][static_cast<std::size_t>(count)];
}

std::string Tally::Table() const {
    std::string text = std::string(titleWidth, ' ') + RightAligned("uploads") + RightAligned("downloads") + "\n";
    for (std::size_t row = 0; row < countCount; ++row) {
        std::string line(titles[row]);
        line.resize(titleWidth, ' ');
        for (const auto& sum : sums)
            line += RightAligned(std::to_string(sum[row]));
        text += line + "\n";
    }
    for (const std::string& report : reports)
        text += (&report == &reports.front() ? "\n" : "") + report + "\n";
    return text;
}

Result<> Tally::Save(const std::filesystem::path& file, const std::string& run) const {
    std::filesystem::path fresh = file;
    fresh += ".new";
    std::ofstream output(fresh, std::ios::binary | std::ios::trunc);
    output << firstLine << "\n" << run << "\n" << next << "\n";
    for (const auto& sum : sums) {
        for (const std::uint64_t each : sum)
            output << each << " ";
        output << "\n";
    }
    for (const std::string& report : reports)
        output << report << "\n";
    output.close();
    std::error_code error;
    if (output)
        std::filesystem::rename(fresh, file, error);
    if (!output || error)
        return Error{FromUtf8(file.string() + " cannot be written")};
    return {};
}

Result<> Tally::Load(const std::filesystem::path& file, const std::string& run) {
    std::ifstream input(file, std::ios::binary);
    if (!input.is_open())
        return {};
    std::string line;
    std::string foundRun;
    if (!std::getline(input, line) || line != firstLine || !std::getline(input, foundRun))
        return Error{FromUtf8(file.string() + " holds no campaign")};
    if (foundRun != run)
        return Error{FromUtf8(file.string() + " holds another campaign:\n  " + foundRun + "\nThis one is:\n  " + run)};
    input >> next;
    for (auto& sum : sums) {
        for (std::uint64_t& each : sum)
            input >> each;
    }
    if (!input)
        return Error{FromUtf8(file.string() + " is damaged")};
    input.ignore(2, '\n');
    for (std::getline(input, line); std::getline(input, line);)
        reports.push_back(line);
    return {};
}

}
