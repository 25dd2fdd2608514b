#include "history/HistoryReader.h"

#include "base/HistoryMessages.h"
#include "history/HistorySchema.h"

#include <functional>
#include <system_error>
#include <thread>

namespace tarvin {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr int mostAttempts = 20;
constexpr auto pauseBetweenAttempts = 50ms;

using Query = std::function<Result<>(SqliteDatabase&)>;

bool IsThere(const fs::path& path, const char* ending) {
    fs::path beside = path;
    beside += ending;
    std::error_code ignored;
    return fs::exists(beside, ignored);
}

// True if a program writes the file now, or was killed while it did.
bool HasJournal(const fs::path& path) {
    return IsThere(path, "-wal") || IsThere(path, "-journal");
}

struct Stamp {
    std::uintmax_t byteCount = 0;
    fs::file_time_type written;
    bool operator==(const Stamp&) const = default;
};

Stamp StampOf(const fs::path& path) {
    std::error_code ignored;
    return {fs::file_size(path, ignored), fs::last_write_time(path, ignored)};
}

// Sets `isOpen` if the query could be put to the database.
Result<> RunIn(const fs::path& path, SqliteDatabase::Access access, const Query& query, bool& isOpen) {
    auto database = SqliteDatabase::Open(path, access);
    if (!database)
        return database.Reason();
    const auto hasHistory = HasHistory(*database);
    if (!hasHistory)
        return hasHistory.Reason();
    isOpen = true;
    const auto read = *hasHistory ? query(*database) : Result<>();
    // A column that this version does not find.
    if (!read && IsNewerHistory(*database))
        return Error{text::historyReason::newer};
    return read;
}

// While no program writes, the file is read without locks and without the files beside it. Otherwise a reader with the
// right to write the folder would leave files there that belong to him, and that a writer could not use. `query` may
// run several times.
Result<> RunQuery(const fs::path& path, const Query& query) {
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        std::error_code error;
        if (!fs::exists(path, error))
            return error ? Error{FromUtf8(error.message())} : Error{text::historyReason::missing};
        bool isOpen = false;
        if (HasJournal(path)) {
            const auto read = RunIn(path, SqliteDatabase::Access::Read, query, isOpen);
            if (isOpen || read.Reason().isBusy)
                return read;
        }
        // Also if a journal was left behind and this user may not tidy up: everything but the last rows is in the file.
        const Stamp before = StampOf(path);
        const auto read = RunIn(path, SqliteDatabase::Access::ReadFixed, query, isOpen);
        if (StampOf(path) == before)
            return read;
        std::this_thread::sleep_for(pauseBetweenAttempts);
    }
    Error changing = {text::historyReason::changing};
    changing.isBusy = true;
    return changing;
}

Result<> TakeRows(SqliteStatement& statement, std::vector<TransferRecord>& rows) {
    while (true) {
        const auto hasRow = statement.Step();
        if (!hasRow)
            return hasRow.Reason();
        if (!*hasRow)
            return {};
        rows.push_back(ReadRow(statement));
    }
}

// The pattern as LIKE takes it, with ! in front of characters that have a meaning there.
KelText LikePattern(KelTextView pattern) {
    KelText like;
    for (const char16_t unit : pattern) {
        if (unit == u'*')
            like += u'%';
        else if (unit == u'?')
            like += u'_';
        else if (unit == u'%' || unit == u'_' || unit == u'!')
            like += {u'!', unit};
        else
            like += unit;
    }
    return like;
}

Result<> SelectRows(SqliteDatabase& database, const HistoryFilter& filter, std::vector<TransferRecord>& rows) {
    std::string sql = "SELECT " + historyColumns + " FROM transfers WHERE true";
    if (!filter.machine.empty())
        sql += " AND machine = ?1 COLLATE NOCASE";
    if (!filter.number.empty())
        sql += " AND number LIKE ?2 ESCAPE '!'";
    if (filter.from)
        sql += " AND end_ms >= ?3";
    if (filter.before)
        sql += " AND end_ms < ?4";
    if (filter.outcome)
        sql += " AND outcome = ?5";
    auto statement = database.Prepare(sql + " ORDER BY end_ms DESC, id DESC LIMIT ?6");
    if (!statement)
        return statement.Reason();
    if (!filter.machine.empty())
        statement->Bind(1, filter.machine);
    if (!filter.number.empty())
        statement->Bind(2, LikePattern(filter.number));
    if (filter.from)
        statement->Bind(3, ToMilliseconds(*filter.from));
    if (filter.before)
        statement->Bind(4, ToMilliseconds(*filter.before));
    if (filter.outcome)
        statement->Bind(5, static_cast<std::int64_t>(*filter.outcome));
    statement->Bind(6, static_cast<std::int64_t>(filter.mostRows));
    return TakeRows(*statement, rows);
}

Result<> SelectPast(SqliteDatabase& database, const KelText& machine, int rowCount, int mostUnseen,
                    std::vector<TransferRecord>& rows) {
    auto statement = database.Prepare(
        "SELECT " + historyColumns +
        " FROM transfers WHERE id IN ("
        "SELECT id FROM (SELECT id FROM transfers WHERE machine = ?1 ORDER BY end_ms DESC, id DESC LIMIT ?2) UNION "
        "SELECT id FROM (SELECT id FROM transfers WHERE machine = ?1 AND outcome = 1 AND seen = 0 "
        "ORDER BY end_ms DESC, id DESC LIMIT ?3)) ORDER BY end_ms, id");
    if (!statement)
        return statement.Reason();
    statement->Bind(1, machine);
    statement->Bind(2, std::int64_t{rowCount});
    statement->Bind(3, std::int64_t{mostUnseen});
    return TakeRows(*statement, rows);
}

Result<> SelectMachines(SqliteDatabase& database, std::vector<KelText>& machines) {
    auto statement = database.Prepare("SELECT DISTINCT machine FROM transfers ORDER BY machine COLLATE NOCASE");
    if (!statement)
        return statement.Reason();
    while (true) {
        const auto hasRow = statement->Step();
        if (!hasRow)
            return hasRow.Reason();
        if (!*hasRow)
            return {};
        machines.push_back(statement->Text(0));
    }
}

// Gives the rows of the query's last run.
template <class Row, class Select>
Result<std::vector<Row>> Collect(const fs::path& path, Select select) {
    std::vector<Row> rows;
    const auto read = RunQuery(path, [&](SqliteDatabase& database) {
        rows.clear();
        return select(database, rows);
    });
    if (!read)
        return read.Reason();
    return rows;
}

}

Result<std::vector<TransferRecord>> ReadHistory(const fs::path& path, const HistoryFilter& filter) {
    return Collect<TransferRecord>(
        path, [&](SqliteDatabase& database, auto& rows) { return SelectRows(database, filter, rows); });
}

Result<std::vector<KelText>> ReadMachines(const fs::path& path) {
    return Collect<KelText>(path, [](SqliteDatabase& database, auto& rows) { return SelectMachines(database, rows); });
}

Result<std::vector<TransferRecord>> ReadPastTransfers(const fs::path& path, const KelText& machine, int rowCount,
                                                      int mostUnseen) {
    return Collect<TransferRecord>(path, [&](SqliteDatabase& database, auto& rows) {
        return SelectPast(database, machine, rowCount, mostUnseen, rows);
    });
}

}
