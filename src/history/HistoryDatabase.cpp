#include "history/HistoryDatabase.h"

#include "history/HistoryReader.h"
#include "history/HistorySchema.h"
#include "history/NetworkDrive.h"

#include <algorithm>
#include <system_error>

namespace tarvin {

namespace {

// How far the clock may be ahead of the newest row and still be believed when old rows are deleted.
constexpr auto mostClockLead = std::chrono::hours(24);

// The statements of a batch.
class Batch {
public:
    static Result<Batch> Prepare(SqliteDatabase& database) {
        auto add =
            database.Prepare("INSERT INTO transfers (" + historyColumns + ") VALUES (" + historyParameters + ")");
        auto markSeen = database.Prepare("UPDATE transfers SET seen = 1 WHERE outcome = 1 AND seen = 0 AND "
                                         "machine = ?1 AND number = ?2 AND direction = ?3");
        auto forget = database.Prepare("DELETE FROM transfers WHERE machine = ?1 AND "
                                       "end_ms < min(?2, (SELECT max(end_ms) FROM transfers) + ?3) - ?4");
        for (const auto* statement : {&add, &markSeen, &forget}) {
            if (!*statement)
                return statement->Reason();
        }
        return Batch(std::move(*add), std::move(*markSeen), std::move(*forget));
    }

    Result<> Make(const TransferRecord& record) {
        if (record.outcome == TransferOutcome::Completed) {
            if (const auto marked = Make(HistorySeen{record.machine, record.number, record.direction}); !marked)
                return marked;
        }
        BindRow(add, record);
        return add.RunOnce();
    }
    Result<> Make(const HistorySeen& seen) {
        markSeen.Bind(1, seen.machine);
        markSeen.Bind(2, seen.number);
        markSeen.Bind(3, static_cast<std::int64_t>(seen.direction));
        return markSeen.RunOnce();
    }
    Result<> Make(const HistoryExpiry& expiry) {
        forget.Bind(1, expiry.machine);
        forget.Bind(2, ToMilliseconds(expiry.now));
        forget.Bind(3, std::int64_t{std::chrono::milliseconds(mostClockLead).count()});
        forget.Bind(4, std::int64_t{expiry.period.count()});
        return forget.RunOnce();
    }

private:
    Batch(SqliteStatement add, SqliteStatement markSeen, SqliteStatement forget)
        : add(std::move(add)), markSeen(std::move(markSeen)), forget(std::move(forget)) {}

    SqliteStatement add;
    SqliteStatement markSeen;
    SqliteStatement forget;
};

Result<> MakeAll(SqliteDatabase& database, std::span<const HistoryChange> changes) {
    auto batch = Batch::Prepare(database);
    if (!batch)
        return batch.Reason();
    for (const HistoryChange& change : changes) {
        const Result<> made = std::visit([&](const auto& each) { return batch->Make(each); }, change);
        if (!made)
            return made;
    }
    return {};
}

}

std::filesystem::path HistoryFile(const std::filesystem::path& installation) {
    return installation / "history.db";
}

Result<SqliteDatabase> HistoryDatabase::OpenForWriting() const {
    auto database = SqliteDatabase::Open(path, SqliteDatabase::Access::ReadWrite);
    if (!database)
        return database;
    // Before anything is written: the file of a newer version or of another program stays as it is.
    const auto hasHistory = HasHistory(*database);
    if (!hasHistory)
        return hasHistory.Reason();
    // The write-ahead log needs memory that all writers share, which two computers do not have. Without success the
    // file keeps its journal: another program is at work in it, and has seen to that.
    (void)database->Run(IsOnNetworkDrive(path.parent_path()) ? "PRAGMA journal_mode = DELETE"
                                                             : "PRAGMA journal_mode = WAL");
    // A row is on the disk when it counts as written, whatever the journal is.
    if (const auto set = database->Run("PRAGMA synchronous = FULL"); !set)
        return set.Reason();
    if (const auto prepared = PrepareHistory(*database); !prepared)
        return prepared.Reason();
    return database;
}

Result<> HistoryDatabase::Apply(std::span<const HistoryChange> changes) {
    std::error_code ignored;
    const bool hasRow = std::any_of(changes.begin(), changes.end(), [](const HistoryChange& change) {
        return std::holds_alternative<TransferRecord>(change);
    });
    // Nothing to mark and nothing to delete: a machine without transfers makes no file.
    if (!hasRow && !std::filesystem::exists(path, ignored))
        return {};
    auto database = OpenForWriting();
    if (!database)
        return database.Reason();
    // At once with the right to write: two programs that first read and then write would block each other.
    Result<> done = database->Run("BEGIN IMMEDIATE");
    if (!done)
        return done;
    done = MakeAll(*database, changes);
    if (done)
        done = database->Run("COMMIT");
    if (!done)
        (void)database->Run("ROLLBACK");
    return done;
}

Result<std::vector<TransferRecord>> HistoryDatabase::PastTransfers(const KelText& machine) {
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored))
        return std::vector<TransferRecord>();
    return ReadPastTransfers(path, machine, pastTransferCount, mostUnseen);
}

}
