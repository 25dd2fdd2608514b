#include "logging/HistoryLog.h"

#include "base/HistoryMessages.h"

#include <algorithm>
#include <cassert>

namespace tarvin {

HistoryLog::HistoryLog(const Clock& clock, std::unique_ptr<TransferHistory> history)
    : clock(clock), history(std::move(history)) {
    assert(this->history);
}

void HistoryLog::Add(const HistoryRow& row) {
    assert(row.record);
    Keep(*row.record);
}

void HistoryLog::Keep(HistoryChange change) {
    waiting.push_back(std::move(change));
    if (waiting.size() <= mostRows)
        return;
    if (std::holds_alternative<TransferRecord>(waiting.front()))
        ++lostCount;
    waiting.pop_front();
}

Result<> HistoryLog::Flush(bool isLast) {
    const auto now = clock.Now();
    const bool hasWork = startedMachine || !waiting.empty() || lostCount > 0;
    if (!hasWork || (isFailing && !isLast && now - lastAttempt < logRetryPeriod))
        return {};
    lastAttempt = now;
    Result<> attempted = Attempt();
    const bool wasFailing = std::exchange(isFailing, !attempted);
    if (!attempted && isLast && RowCount() > 0)
        return Error{Filled(text::historyReason::rowsNotKept, {ToText(RowCount()), attempted.Reason().text})};
    if (!attempted)
        return wasFailing ? Result<>() : attempted;
    if (lostCount > 0)
        return Error{Filled(text::historyReason::rowsLost, {ToText(std::exchange(lostCount, 0))})};
    return {};
}

// Those for which there was no room are lost too.
std::int64_t HistoryLog::RowCount() const {
    return lostCount + std::count_if(waiting.begin(), waiting.end(), [](const HistoryChange& each) {
               return std::holds_alternative<TransferRecord>(each);
           });
}

Result<> HistoryLog::Attempt() {
    // Before the rows of this run: they are no past transfers.
    if (startedMachine) {
        auto past = history->PastTransfers(*startedMachine);
        if (!past)
            return past.Reason();
        pastTransfers = std::move(*past);
        startedMachine.reset();
    }
    if (waiting.empty())
        return {};
    Result<> applied = history->Apply(std::vector(waiting.begin(), waiting.end()));
    if (applied)
        waiting.clear();
    return applied;
}

}
