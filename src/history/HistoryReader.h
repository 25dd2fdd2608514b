#pragma once
// Reads the history beside the programs that write it. A reader needs no right to write, leaves no file behind and
// keeps no writer waiting. Any thread; blocks for as long as the disk takes.

#include "base/Result.h"
#include "logging/TransferRecord.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace tarvin {

// Which rows are wanted. Each part that is there restricts them.
struct HistoryFilter {
    static constexpr std::size_t noLimit = 0x7FFFFFFF;

    KelText machine = {}; // in any case; empty: all machines
    KelText number = {};  // in any case; * stands for any characters and ? for one; empty: all numbers
    std::optional<TransferRecord::Time> from = {};
    std::optional<TransferRecord::Time> before = {};
    std::optional<TransferOutcome> outcome = {};
    std::size_t mostRows = noLimit; // the newest ones
};

// The rows by the time of their end, the newest first. Fails if there is no history.
Result<std::vector<TransferRecord>> ReadHistory(const std::filesystem::path& path, const HistoryFilter& filter);

// The names of the machines that have rows, sorted.
Result<std::vector<KelText>> ReadMachines(const std::filesystem::path& path);

// The newest `rowCount` rows of the machine and its newest `mostUnseen` failures that no user has seen, oldest first.
Result<std::vector<TransferRecord>> ReadPastTransfers(const std::filesystem::path& path, const KelText& machine,
                                                      int rowCount, int mostUnseen);

}
