#pragma once
// Where the history of transfers is kept. A program gives its log files an implementation.

#include "base/Result.h"
#include "logging/LogRecord.h"

#include <filesystem>
#include <span>
#include <variant>
#include <vector>

namespace tarvin {

using HistoryChange = std::variant<TransferRecord, HistorySeen, HistoryExpiry>;

// One thread, which may block for as long as the disk takes. Only Path belongs to every thread.
class TransferHistory {
public:
    virtual ~TransferHistory() = default;
    virtual const std::filesystem::path& Path() const = 0;

    // Makes all of the changes, oldest first, or after a failure none of them. A completed transfer marks the failures
    // of its machine, number and direction as seen.
    virtual Result<> Apply(std::span<const HistoryChange> changes) = 0;

    // The newest transfers of the machine and all of its failures that no user has seen, oldest first. Empty if there
    // is no history yet.
    virtual Result<std::vector<TransferRecord>> PastTransfers(const KelText& machine) = 0;
};

}
