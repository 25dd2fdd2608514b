#pragma once
// Rows for the tests of the history.

#include "history/HistoryDatabase.h"

namespace tarvin::test {

inline TransferRecord::Time TimeAt(std::int64_t milliseconds) {
    return TransferRecord::Time(std::chrono::milliseconds(milliseconds));
}

inline TransferRecord Row(KelText machine, KelText number, TransferOutcome outcome, std::int64_t endMilliseconds,
                          TransferDirection direction = TransferDirection::ToMachine) {
    TransferRecord row;
    row.machine = std::move(machine);
    row.number = std::move(number);
    row.outcome = outcome;
    row.direction = direction;
    row.begin = TimeAt(endMilliseconds - 1000);
    row.end = TimeAt(endMilliseconds);
    return row;
}

inline std::vector<KelText> NumbersOf(const std::vector<TransferRecord>& rows) {
    std::vector<KelText> numbers;
    for (const TransferRecord& row : rows)
        numbers.push_back(row.number);
    return numbers;
}

// The numbers of the machine's failures that no user has seen.
inline std::vector<KelText> UnseenFailures(HistoryDatabase& history, const KelText& machine) {
    std::vector<KelText> numbers;
    const auto past = history.PastTransfers(machine);
    if (!past)
        return {past.Reason().text};
    for (const TransferRecord& row : *past) {
        if (row.outcome == TransferOutcome::Failed && !row.isSeen)
            numbers.push_back(row.number);
    }
    return numbers;
}

}
