#pragma once
// The rows on their way into the history. They wait in memory until Flush, and for as long as the history cannot be
// written. One thread at a time; only Path belongs to every thread.

#include "base/Clock.h"
#include "logging/TransferHistory.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace tarvin {

class HistoryLog {
public:
    // The rows that wait at most for a history that cannot be written.
    static constexpr std::size_t mostRows = 10'000;

    HistoryLog(const Clock& clock, std::unique_ptr<TransferHistory> history);

    const std::filesystem::path& Path() const { return history->Path(); }

    // The next successful Flush reads the machine's past transfers before it writes anything.
    void Start(const KelText& machine) { startedMachine = machine; }
    void Add(const HistoryRow& row);
    void Add(const HistorySeen& seen) { Keep(seen); }
    void Add(const HistoryExpiry& expiry) { Keep(expiry); }
    // Counts rows for which there was no room before they came here.
    void CountLost(std::int64_t count) { lostCount += count; }

    // Writes the waiting rows, all or none of them. Fails once for each time in which the history cannot be read or
    // written. Meanwhile the rows wait, and Flush tries again each minute. If more rows wait than there is room for,
    // the oldest ones are dropped; the Flush that writes the others then fails once, with their number. With `isLast`
    // it tries at once, and a failure always gives the number of rows that are lost with this program.
    Result<> Flush(bool isLast = false);
    // True while the rows wait for the next attempt.
    bool IsFailing() const { return isFailing; }

    // What Flush has read since Start. None before, and once it has been taken.
    std::optional<std::vector<TransferRecord>> TakePastTransfers() { return std::exchange(pastTransfers, {}); }

private:
    void Keep(HistoryChange change);
    std::int64_t RowCount() const;
    Result<> Attempt();

    const Clock& clock;
    const std::unique_ptr<TransferHistory> history;
    std::deque<HistoryChange> waiting;
    std::optional<KelText> startedMachine;
    std::optional<std::vector<TransferRecord>> pastTransfers;
    std::int64_t lostCount = 0;
    bool isFailing = false;
    Clock::TimePoint lastAttempt;
};

}
