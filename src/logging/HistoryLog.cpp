#include "logging/HistoryLog.h"

#include "base/HistoryMessages.h"
#include "base/Sha256.h"

#include <algorithm>
#include <cassert>

namespace tarvin {

HistoryLog::HistoryLog(const Clock& clock, std::unique_ptr<TransferHistory> history)
    : clock(clock), history(std::move(history)) {
    assert(this->history);
}

void HistoryLog::Add(const HistoryRow& row) {
    assert(row.record);
    Keep(*row.record, row.content);
}

void HistoryLog::Keep(HistoryChange change, std::shared_ptr<const TransferContent> content) {
    waiting.push_back({std::move(change), std::move(content)});
    if (waiting.size() <= mostRows)
        return;
    if (std::holds_alternative<TransferRecord>(waiting.front().change))
        ++lostCount;
    waiting.pop_front();
}

// Also while the history cannot be written: a content takes more memory than all waiting rows.
void HistoryLog::ComputeChecksums() {
    for (auto change = waiting.rbegin(); change != waiting.rend(); ++change) {
        if (!change->content)
            continue;
        Sha256 sum;
        sum.Add(change->content->View());
        std::get<TransferRecord>(change->change).sha256 = sum.Digits();
        change->content.reset();
    }
}

Result<> HistoryLog::Flush(bool isLast) {
    ComputeChecksums();
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
    return lostCount + std::count_if(waiting.begin(), waiting.end(), [](const Waiting& each) {
               return std::holds_alternative<TransferRecord>(each.change);
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
    std::vector<HistoryChange> changes;
    changes.reserve(waiting.size());
    for (const Waiting& each : waiting)
        changes.push_back(each.change);
    Result<> applied = history->Apply(changes);
    if (applied)
        waiting.clear();
    return applied;
}

}
