#pragma once
// The history of all machines of an installation, as a database of SQLite. Several programs may write it at once. The
// file is open only while a batch of rows is written, so that it can be copied, moved and deleted at any time.

#include "history/Sqlite.h"
#include "logging/TransferHistory.h"

namespace tarvin {

// The file of the history in the installation folder.
std::filesystem::path HistoryFile(const std::filesystem::path& installation);

class HistoryDatabase : public TransferHistory {
public:
    // The past transfers of a machine, beside its unseen failures.
    static constexpr int pastTransferCount = 20;
    // Unseen failures that are read at most: the newest ones.
    static constexpr int mostUnseen = 1000;

    explicit HistoryDatabase(std::filesystem::path path) : path(std::move(path)) {}

    const std::filesystem::path& Path() const override { return path; }
    // Makes the file when the first row comes.
    Result<> Apply(std::span<const HistoryChange> changes) override;
    Result<std::vector<TransferRecord>> PastTransfers(const KelText& machine) override;

private:
    Result<SqliteDatabase> OpenForWriting() const;

    const std::filesystem::path path;
};

}
