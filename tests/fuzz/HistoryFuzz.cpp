// Feeds a history file to its readers and its writer. The first byte of the input is 'f' for the bytes of the file, or
// 's' for SQL that makes it.

#include "fuzz/FuzzedDisk.h"
#include "harness/TemporaryFolder.h"
#include "history/HistoryDatabase.h"
#include "history/HistoryReader.h"

#include <filesystem>
#include <string>

#include <sqlite3.h>

using namespace tarvin;
using namespace tarvin::test;

namespace {

constexpr int mostSteps = 1000; // of a thousand instructions each

// A file of someone who means harm. SQL that takes too long is given up.
void MakeFile(const std::filesystem::path& path, const std::string& sql) {
    sqlite3* database = nullptr;
    if (sqlite3_open(path.c_str(), &database) == SQLITE_OK) {
        int steps = 0;
        sqlite3_progress_handler(
            database, 1000, [](void* count) { return ++*static_cast<int*>(count) > mostSteps ? 1 : 0; }, &steps);
        sqlite3_limit(database, SQLITE_LIMIT_LENGTH, 100'000);
        sqlite3_limit(database, SQLITE_LIMIT_ATTACHED, 0);
        sqlite3_exec(database, "PRAGMA page_size = 512; PRAGMA max_page_count = 1000;", nullptr, nullptr, nullptr);
        sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr);
    }
    sqlite3_close_v2(database);
}

void CheckRows(const std::vector<TransferRecord>& rows) {
    for (const TransferRecord& each : rows) {
        const auto outcome = static_cast<int>(each.outcome);
        const bool isKnown = outcome >= 0 && outcome <= 3 && static_cast<int>(each.direction) >= 0 &&
                             static_cast<int>(each.direction) <= 1;
        Require(isKnown && each.byteCount >= 0 && each.lineCount >= 0 && each.damaged >= 0,
                "values are in their ranges");
        Require(each.begin.time_since_epoch().count() >= 0 && each.end.time_since_epoch().count() >= 0,
                "times can be counted with");
    }
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryFolder folder;
    for (const auto& each : std::filesystem::directory_iterator(folder.Path()))
        std::filesystem::remove(each.path());
    const std::string input(reinterpret_cast<const char*>(data), size);
    if (input.empty())
        return 0;
    const std::filesystem::path path = folder / "history.db";
    if (input.front() == 's')
        MakeFile(path, input.substr(1));
    else
        folder.WriteFile("history.db", input.substr(1));

    const auto before = ReadHistory(path, {.machine = {}, .mostRows = 1000});
    if (before)
        CheckRows(*before);
    (void)ReadHistory(path, {.machine = u"lathe", .number = u"4?*", .outcome = TransferOutcome::Failed});
    (void)ReadMachines(path);
    HistoryDatabase history(path);
    if (const auto past = history.PastTransfers(u"LATHE"))
        CheckRows(*past);

    TransferRecord record;
    record.machine = u"LATHE";
    record.number = u"42";
    record.begin = record.end = TransferRecord::Time(std::chrono::hours(24 * 365 * 50));
    const std::vector<HistoryChange> changes = {record, HistorySeen{u"LATHE", u"7", TransferDirection::ToMachine}};
    const bool isApplied = static_cast<bool>(history.Apply(changes));
    const auto after = ReadHistory(path, {.machine = {}, .mostRows = 1000});
    if (before && !isApplied)
        Require(after && *after == *before, "a failed write leaves the rows as they were");
    return 0;
}
