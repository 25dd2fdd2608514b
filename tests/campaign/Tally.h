#pragma once
// The sums of a campaign, their table, and the file that keeps them, so that a long run can be stopped and go on. One
// thread.

#include "base/Result.h"
#include "campaign/Judge.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::campaign {

// The rows of the table, in its order.
enum class Count : std::size_t {
    Transfers,
    Hit,
    Identical,
    BothKnow,
    ControllerAloneKnows,
    ProgramAloneKnows,
    Silent,
    SilentDataChecksum,
    SilentRequestChecksum,
    SilentRightChecksum,
    SilentRepeat,
    SilentEarlierAttempt,
    SilentOutOfStep,
    SilentUnknown,
    CompletedNotWhole,
    PartUnderFinalName,
    OtherOverwritten,
    OtherCreated,
    Mute,
    MuteAfterXoff,
    Repeats,
    Restarts,
    Refusals,
    Milliseconds,
    End,
};

// The cause in words.
std::string_view TitleOf(Cause cause);

class Tally {
public:
    void Add(TransferKind kind, Count count, std::uint64_t amount = 1);
    void Add(TransferKind kind, const Judgement& judgement);
    // A difference that the table must name.
    void Report(std::string line) { reports.push_back(std::move(line)); }

    std::uint64_t Of(TransferKind kind, Count count) const;
    // The table and the reports, as plain text that ends with a line end.
    std::string Table() const;

    // The number of the next transfer; 1 at first.
    std::uint32_t next = 1;

    // Writes the sums in one step. `run` tells which run they belong to.
    Result<> Save(const std::filesystem::path& file, const std::string& run) const;
    // Reads the sums of that run. A missing file leaves the tally as it is. Fails if the file belongs to another run.
    Result<> Load(const std::filesystem::path& file, const std::string& run);

private:
    static constexpr std::size_t countCount = static_cast<std::size_t>(Count::End);

    std::array<std::array<std::uint64_t, countCount>, 2> sums = {};
    std::vector<std::string> reports;
};

}
