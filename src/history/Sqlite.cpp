#include "history/Sqlite.h"

#include "base/HistoryMessages.h"
#include "base/System.h"

#include <algorithm>
#include <cassert>

#include <sqlite3.h>

namespace tarvin {

namespace {

// A writer holds the file for some milliseconds. What takes longer is no writer of ours.
constexpr int longestWaitMilliseconds = 2000;
// No text of ours comes near this. A file of foreign origin may claim gigabytes.
constexpr int longestText = 1'000'000;

// The path as SQLite's address of a file, which alone can carry options.
std::string AddressOf(const std::filesystem::path& path, bool isFixed) {
    std::error_code ignored;
    const auto whole = std::filesystem::absolute(path, ignored);
    std::string name = ToUtf8(FromPath(whole.empty() ? path : whole));
    if (std::filesystem::path::preferred_separator == '\\')
        std::replace(name.begin(), name.end(), '\\', '/');
    std::string address = name.starts_with('/') ? "file://" : "file:///";
    for (const char byte : name) {
        constexpr std::string_view plain = "/:._-";
        const bool isPlain = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                             (byte >= 'a' && byte <= 'z') || plain.find(byte) != std::string_view::npos;
        if (isPlain) {
            address.push_back(byte);
            continue;
        }
        const auto value = static_cast<std::uint8_t>(byte);
        address.push_back('%');
        address.push_back("0123456789ABCDEF"[value >> 4]);
        address.push_back("0123456789ABCDEF"[value & 0xF]);
    }
    if (isFixed)
        address += "?immutable=1";
    return address;
}

Error ErrorOf(sqlite3* database, int code) {
    const KelText words = FromUtf8(database != nullptr ? sqlite3_errmsg(database) : sqlite3_errstr(code));
    switch (code & 0xFF) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return {Filled(text::historyReason::damaged, {words})};
    case SQLITE_BUSY:
    case SQLITE_LOCKED: {
        Error locked = {Filled(text::historyReason::locked, {words})};
        locked.isBusy = true;
        return locked;
    }
    case SQLITE_FULL:
        return {Filled(text::historyReason::full, {words})};
    case SQLITE_READONLY:
        return {Filled(text::historyReason::readOnly, {words})};
    case SQLITE_CANTOPEN:
    case SQLITE_IOERR:
        break;
    default:
        return {words};
    }
    const int systemError = database != nullptr ? sqlite3_system_errno(database) : 0;
    return {systemError != 0 ? SystemErrorText(static_cast<unsigned long>(systemError)) : words};
}

}

void SqliteDatabase::Closer::operator()(sqlite3* closed) const {
    sqlite3_close_v2(closed);
}

Result<SqliteDatabase> SqliteDatabase::Open(const std::filesystem::path& path, Access access) {
    const int flags = access == Access::ReadWrite ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE : SQLITE_OPEN_READONLY;
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(AddressOf(path, access == Access::ReadFixed).c_str(), &handle,
                                     flags | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX, nullptr);
    // Even a failure may leave an object, which holds the reason.
    SqliteDatabase opened(handle);
    if (code != SQLITE_OK)
        return ErrorOf(handle, code);
    sqlite3_busy_timeout(handle, longestWaitMilliseconds);
    sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, longestText);
    // A file of foreign origin must not run functions through its schema. Its views could compute for ever, and its
    // triggers could change rows behind a write.
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    return opened;
}

Error SqliteDatabase::LastError() const {
    return ErrorOf(database.get(), sqlite3_extended_errcode(database.get()));
}

Result<> SqliteDatabase::Run(const char* sql) {
    return sqlite3_exec(database.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK ? Result<>() : LastError();
}

Result<SqliteStatement> SqliteDatabase::Prepare(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database.get(), sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
        return LastError();
    return SqliteStatement(statement);
}

Result<std::int64_t> SqliteDatabase::ReadNumber(const char* sql) {
    auto statement = Prepare(sql);
    if (!statement)
        return statement.Reason();
    const auto hasRow = statement->Step();
    if (!hasRow)
        return hasRow.Reason();
    return *hasRow ? statement->Number(0) : 0;
}

void SqliteStatement::Closer::operator()(sqlite3_stmt* closed) const {
    sqlite3_finalize(closed);
}

void SqliteStatement::Bind(int index, std::int64_t number) {
    if (sqlite3_bind_int64(statement.get(), index, number) != SQLITE_OK)
        hasFailedBind = true;
}

void SqliteStatement::Bind(int index, KelTextView text) {
    // A byte of a path that is no UTF-8 stays that byte.
    const std::string bytes = ToUtf8(text);
    if (sqlite3_bind_text64(statement.get(), index, bytes.data(), bytes.size(), SQLITE_TRANSIENT, SQLITE_UTF8) !=
        SQLITE_OK)
        hasFailedBind = true;
}

Result<bool> SqliteStatement::Step() {
    sqlite3* const database = sqlite3_db_handle(statement.get());
    if (hasFailedBind)
        return ErrorOf(database, sqlite3_extended_errcode(database));
    const int code = sqlite3_step(statement.get());
    if (code == SQLITE_ROW)
        return true;
    if (code == SQLITE_DONE)
        return false;
    return ErrorOf(database, sqlite3_extended_errcode(database));
}

Result<> SqliteStatement::RunOnce() {
    const auto stepped = Step();
    assert(!stepped || !*stepped);
    sqlite3_reset(statement.get());
    return stepped ? Result<>() : stepped.Reason();
}

std::int64_t SqliteStatement::Number(int column) const {
    return sqlite3_column_int64(statement.get(), column);
}

KelText SqliteStatement::Text(int column) const {
    const auto* bytes = sqlite3_column_text(statement.get(), column);
    if (bytes == nullptr)
        return {};
    const auto byteCount = static_cast<std::size_t>(sqlite3_column_bytes(statement.get(), column));
    return FromUtf8({reinterpret_cast<const char*>(bytes), byteCount});
}

}
