#pragma once
// The form of the history's database: its version, its table, and a row of it. One thread at a time for each database.

#include "history/Sqlite.h"
#include "logging/TransferRecord.h"

#include <string>

namespace tarvin {

// Gives a new database its table. Fails for a database of another program or of a newer version of this one, and leaves
// it as it is.
Result<> PrepareHistory(SqliteDatabase& database);

// True if the database has a history that can be read, false if it is new and empty. A newer version can be read as
// long as it keeps the columns.
Result<bool> HasHistory(SqliteDatabase& database);

// Whether a newer version of this program has made the database. False if that cannot be read.
bool IsNewerHistory(SqliteDatabase& database);

// The columns that BindRow and ReadRow use, in their order.
extern const std::string historyColumns;
// The parameters for them.
extern const std::string historyParameters;

// Binds the record's fields to the statement's first parameters.
void BindRow(SqliteStatement& statement, const TransferRecord& record);
// The record in the statement's present row. Numbers that no record can have become the nearest possible ones.
TransferRecord ReadRow(const SqliteStatement& statement);

// Times are stored as milliseconds since 1970, UTC.
std::int64_t ToMilliseconds(TransferRecord::Time time);

}
