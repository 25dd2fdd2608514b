#pragma once
// Writes rows of the history, and their totals, as a list for people, as CSV and as JSON. UTF-8. CSV follows RFC 4180:
// its lines end with CR LF, and every value stays as it is, also one that a spreadsheet could take for a formula. Stops
// when the stream fails.

#include "history/HistoryOptions.h"

#include <iosfwd>
#include <span>

namespace tarvin {

void WriteHistory(std::ostream& output, std::span<const TransferRecord> rows, HistoryForm form);

// One line for each machine and local day, the newest day first.
void WriteTotals(std::ostream& output, std::span<const TransferRecord> rows, HistoryForm form);

// A value of CSV, in quotes where it needs them. What is no character becomes U+FFFD.
std::string CsvValue(KelTextView text);

}
