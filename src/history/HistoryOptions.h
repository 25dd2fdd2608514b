#pragma once
// The command line of tarvin-history.

#include "history/HistoryReader.h"

#include <span>

namespace tarvin {

enum class HistoryForm { List, Csv, Json };

struct HistoryRequest {
    HistoryFilter filter;
    HistoryForm form = HistoryForm::List;
    bool wantsTotals = false;
    // The database. Empty: the one of the installation.
    std::filesystem::path database;
};

// Reads the words of the command line. Days are those of the local time at `now`. A failure says what is wrong.
Result<HistoryRequest> ReadHistoryOptions(std::span<const KelText> arguments, TransferRecord::Time now);

}
