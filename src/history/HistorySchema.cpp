#include "history/HistorySchema.h"

#include "base/HistoryMessages.h"

#include <algorithm>

namespace tarvin {

namespace {

constexpr std::int64_t version = 1;
// Tells tools which program a database belongs to: "TvHi".
constexpr std::int64_t applicationId = 0x54764869;

constexpr char createHistory[] = R"(
CREATE TABLE transfers (
    id            INTEGER PRIMARY KEY,
    machine       TEXT    NOT NULL,
    number        TEXT    NOT NULL,
    path          TEXT    NOT NULL,
    direction     INTEGER NOT NULL,
    outcome       INTEGER NOT NULL,
    reason        TEXT    NOT NULL,
    begin_ms      INTEGER NOT NULL,
    end_ms        INTEGER NOT NULL,
    bytes         INTEGER NOT NULL,
    bytes_total   INTEGER NOT NULL,
    lines         INTEGER NOT NULL,
    lines_total   INTEGER NOT NULL,
    repeats       INTEGER NOT NULL,
    damaged       INTEGER NOT NULL,
    driver_errors INTEGER NOT NULL,
    sha256        TEXT    NOT NULL,
    seen          INTEGER NOT NULL
);
CREATE INDEX transfers_of_machine ON transfers (machine, end_ms);
CREATE INDEX transfers_by_time ON transfers (end_ms);
CREATE INDEX unseen_failures ON transfers (machine, number, direction) WHERE outcome = 1 AND seen = 0;
PRAGMA application_id = 1417037929;
PRAGMA user_version = 1;
)";
static_assert(applicationId == 1417037929);

// The clock of the system counts nanoseconds and ends in the year 2262.
constexpr std::int64_t latestMilliseconds = 9'000'000'000'000;

TransferRecord::Time ToTime(std::int64_t milliseconds) {
    return TransferRecord::Time(
        std::chrono::milliseconds(std::clamp<std::int64_t>(milliseconds, 0, latestMilliseconds)));
}

}

const std::string historyColumns = "machine, number, path, direction, outcome, reason, begin_ms, end_ms, bytes, "
                                   "bytes_total, lines, lines_total, repeats, damaged, driver_errors, sha256, seen";
const std::string historyParameters = "?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16, ?17";

std::int64_t ToMilliseconds(TransferRecord::Time time) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
}

Result<bool> HasHistory(SqliteDatabase& database) {
    const auto tableCount = database.ReadNumber("SELECT count(*) FROM sqlite_master");
    if (!tableCount)
        return tableCount.Reason();
    const auto owner = database.ReadNumber("PRAGMA application_id");
    if (!owner)
        return owner.Reason();
    if (*owner == 0 && *tableCount == 0)
        return false;
    if (*owner != applicationId)
        return Error{text::historyReason::foreign};
    return true;
}

bool IsNewerHistory(SqliteDatabase& database) {
    return database.ReadNumber("PRAGMA user_version").ValueOr(0) > version;
}

Result<> PrepareHistory(SqliteDatabase& database) {
    // Look first without the right to write: nearly always the table is there.
    auto hasHistory = HasHistory(database);
    if (hasHistory && !*hasHistory) {
        if (const auto begun = database.Run("BEGIN IMMEDIATE"); !begun)
            return begun;
        // Another program may have made it in between.
        hasHistory = HasHistory(database);
        Result<> made = hasHistory && !*hasHistory ? database.Run(createHistory) : Result<>();
        if (made)
            made = database.Run("COMMIT");
        if (!made) {
            (void)database.Run("ROLLBACK");
            return made;
        }
    }
    if (!hasHistory)
        return hasHistory.Reason();
    return IsNewerHistory(database) ? Result<>(Error{text::historyReason::newer}) : Result<>();
}

void BindRow(SqliteStatement& statement, const TransferRecord& record) {
    statement.Bind(1, record.machine);
    statement.Bind(2, record.number);
    statement.Bind(3, record.path);
    statement.Bind(4, static_cast<std::int64_t>(record.direction));
    statement.Bind(5, static_cast<std::int64_t>(record.outcome));
    statement.Bind(6, record.reason);
    statement.Bind(7, ToMilliseconds(record.begin));
    statement.Bind(8, ToMilliseconds(record.end));
    statement.Bind(9, record.byteCount);
    statement.Bind(10, record.bytesTotal);
    statement.Bind(11, record.lineCount);
    statement.Bind(12, record.linesTotal);
    statement.Bind(13, record.repeats);
    statement.Bind(14, record.damaged);
    statement.Bind(15, record.driverErrors);
    statement.Bind(16, FromUtf8(record.sha256));
    statement.Bind(17, std::int64_t{record.isSeen});
}

TransferRecord ReadRow(const SqliteStatement& statement) {
    const auto number = [&](int column, std::int64_t highest) {
        return std::clamp<std::int64_t>(statement.Number(column), 0, highest);
    };
    constexpr std::int64_t any = 0x7FFF'FFFF'FFFF'FFFF;
    TransferRecord record;
    record.machine = statement.Text(0);
    record.number = statement.Text(1);
    record.path = statement.Text(2);
    record.direction = static_cast<TransferDirection>(number(3, 1));
    record.outcome = static_cast<TransferOutcome>(number(4, 3));
    record.reason = statement.Text(5);
    record.begin = ToTime(statement.Number(6));
    record.end = ToTime(statement.Number(7));
    record.byteCount = number(8, any);
    record.bytesTotal = number(9, any);
    record.lineCount = number(10, any);
    record.linesTotal = number(11, any);
    record.repeats = number(12, any);
    record.damaged = number(13, any);
    record.driverErrors = number(14, any);
    record.sha256 = ToUtf8(statement.Text(15));
    record.isSeen = statement.Number(16) != 0;
    return record;
}

}
