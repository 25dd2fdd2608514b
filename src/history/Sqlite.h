#pragma once
// A database file of SQLite and its statements. One thread at a time for each database.

#include "base/Result.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace tarvin {

class SqliteStatement;

class SqliteDatabase {
public:
    enum class Access {
        ReadWrite, // makes a file that is missing
        Read,      // waits for writers
        ReadFixed  // takes the file as one that never changes: without locks, and without files beside it
    };

    // Opens the database. Waits for other programs where it has to, here and later, for two seconds at most.
    static Result<SqliteDatabase> Open(const std::filesystem::path& path, Access access);

    // Runs one or more statements without values. Requires an open database, as every operation does.
    Result<> Run(const char* sql);
    Result<SqliteStatement> Prepare(const std::string& sql);
    // The number in the first column of the first row; 0 without a row.
    Result<std::int64_t> ReadNumber(const char* sql);

    // Why the last call has failed.
    Error LastError() const;

private:
    struct Closer {
        void operator()(sqlite3* closed) const;
    };

    explicit SqliteDatabase(sqlite3* database) : database(database) {}

    std::unique_ptr<sqlite3, Closer> database;
};

// Must not outlive its database.
class SqliteStatement {
public:
    // Give the parameter `index`, from 1, its value. It keeps the value over Restart.
    void Bind(int index, std::int64_t number);
    void Bind(int index, KelTextView text);

    // Goes to the next row. False behind the last row.
    Result<bool> Step();
    // Runs a statement that has no rows to its end, ready for the next run.
    Result<> RunOnce();

    // A column of the present row, from 0. A value of another type is converted.
    std::int64_t Number(int column) const;
    KelText Text(int column) const;

private:
    friend class SqliteDatabase;
    struct Closer {
        void operator()(sqlite3_stmt* closed) const;
    };

    explicit SqliteStatement(sqlite3_stmt* statement) : statement(statement) {}

    std::unique_ptr<sqlite3_stmt, Closer> statement;
    bool hasFailedBind = false;
};

}
