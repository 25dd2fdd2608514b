#include "history/HistoryDatabase.h"

#include "harness/ManualClock.h"
#include "harness/TemporaryFolder.h"
#include "history/HistoryReader.h"
#include "history/HistoryRows.h"
#include "logging/LogFiles.h"

#include <memory>
#include <thread>

#include <doctest/doctest.h>
#include <sqlite3.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

// A second connection, as another program has it.
class OtherProgram {
public:
    explicit OtherProgram(const std::filesystem::path& path) {
        REQUIRE(sqlite3_open(ToUtf8(FromPath(path)).c_str(), &database) == SQLITE_OK);
    }
    ~OtherProgram() { sqlite3_close(database); }
    void Run(const char* sql) {
        INFO(sql, ": ", sqlite3_errmsg(database));
        REQUIRE(sqlite3_exec(database, sql, nullptr, nullptr, nullptr) == SQLITE_OK);
    }

private:
    sqlite3* database = nullptr;
};

// The rows of `machine` by themselves, as a running program hands them to its logs.
struct TestedFiles {
    explicit TestedFiles(const std::filesystem::path& path) : files(std::make_unique<HistoryDatabase>(path)) {}

    LogNews Add(TransferRecord row) {
        return files.Write({{now, HistoryRow{std::make_shared<const TransferRecord>(std::move(row))}}}, now);
    }
    LogNews WriteAfter(Clock::Duration pause) {
        now += pause;
        return files.Write({}, now);
    }

    LogFiles files;
    Clock::TimePoint now;
};

}

TEST_CASE("HistoryDatabase: every field of a row comes back, whatever its texts hold") {
    const TemporaryFolder folder;
    const auto path = folder.Path() / ToPath(u"\u00E4 %20 #.db");
    HistoryDatabase history(path);
    TransferRecord row;
    row.machine = u"LASER 2, \"left\"";
    row.number = u"\u00E4\xD83D\xDE00\x0001";
    // A byte of a path that is no UTF-8.
    row.path = u"/srv/\xDCFF;\n'";
    row.direction = TransferDirection::FromMachine;
    row.outcome = TransferOutcome::Cancelled;
    row.reason = KelText(u"a\0b", 3);
    row.begin = TimeAt(1'700'000'000'123);
    row.end = TimeAt(1'700'000'001'456);
    row.byteCount = 3'000'000'000;
    row.bytesTotal = 1;
    row.lineCount = 2;
    row.linesTotal = 3;
    row.repeats = 4;
    row.damaged = 5;
    row.driverErrors = 6;
    row.sha256 = "abc";
    row.isSeen = true;
    CHECK(history.PastTransfers(row.machine)->empty());
    const HistoryChange changes[] = {row};
    REQUIRE(history.Apply(changes));
    CHECK(*history.PastTransfers(row.machine) == std::vector{row});
    CHECK(*ReadMachines(path) == std::vector{row.machine});
    // No file beside it that another user could not write.
    CHECK(std::distance(std::filesystem::directory_iterator(folder.Path()), {}) == 1);
}

TEST_CASE("HistoryDatabase: a view is no history, and a trigger of the file removes no row") {
    const TemporaryFolder folder;
    HistoryDatabase history(folder / "history.db");
    const HistoryChange changes[] = {Row(u"A", u"1", TransferOutcome::Completed, 1000)};
    REQUIRE(history.Apply(changes));
    OtherProgram(history.Path())
        .Run("CREATE TRIGGER forget AFTER INSERT ON transfers BEGIN DELETE FROM transfers; END");
    REQUIRE(history.Apply(changes));
    CHECK(ReadHistory(history.Path(), {})->size() == 2);

    // Rows without end.
    OtherProgram(history.Path())
        .Run("DROP TABLE transfers;"
             "CREATE VIEW transfers AS WITH RECURSIVE n(x) AS (SELECT 1 UNION ALL SELECT x FROM n)"
             " SELECT x id, x machine, x number, x path, x direction, x outcome, x reason, x begin_ms, x end_ms,"
             " x bytes, x bytes_total, x lines, x lines_total, x repeats, x damaged, x driver_errors, x sha256,"
             " x seen FROM n");
    CHECK_FALSE(ReadHistory(history.Path(), {}));
    CHECK_FALSE(ReadMachines(history.Path()));
    CHECK_FALSE(history.PastTransfers(u"A"));
    CHECK_FALSE(history.Apply(changes));
}

TEST_CASE("HistoryDatabase: the past of a machine is its newest transfers and all unseen failures") {
    const TemporaryFolder folder;
    HistoryDatabase history(folder / "history.db");
    std::vector<HistoryChange> changes = {Row(u"A", u"old failure", TransferOutcome::Failed, 1000),
                                          Row(u"A", u"seen failure", TransferOutcome::Failed, 2000),
                                          HistorySeen{u"A", u"seen failure", TransferDirection::ToMachine},
                                          Row(u"B", u"other machine", TransferOutcome::Failed, 3000)};
    // Not in the order of their times: a clock was set.
    for (int index = 29; index >= 0; --index)
        changes.push_back(Row(u"A", ToText(index), TransferOutcome::Refused, 10'000 + index));
    REQUIRE(history.Apply(changes));
    const auto past = NumbersOf(*history.PastTransfers(u"A"));
    REQUIRE(past.size() == HistoryDatabase::pastTransferCount + 1);
    CHECK(past.front() == u"old failure");
    CHECK(past[1] == u"10");
    CHECK(past.back() == u"29");
}

TEST_CASE("HistoryDatabase: a failure is seen by its mark or by a completed transfer, a row goes by its age") {
    const TemporaryFolder folder;
    HistoryDatabase history(folder / "history.db");
    // Without a row there is nothing to mark, and no file.
    const HistoryChange mark[] = {HistorySeen{u"A", u"1", TransferDirection::ToMachine}};
    REQUIRE(history.Apply(mark));
    CHECK_FALSE(std::filesystem::exists(folder / "history.db"));

    std::vector<HistoryChange> failures;
    for (const KelText number : {u"1", u"2", u"3"})
        failures.push_back(Row(u"A", number, TransferOutcome::Failed, 1000));
    failures.push_back(Row(u"A", u"4", TransferOutcome::Failed, 1000, TransferDirection::FromMachine));
    failures.push_back(Row(u"B", u"1", TransferOutcome::Failed, 1000));
    REQUIRE(history.Apply(failures));
    CHECK(UnseenFailures(history, u"A").size() == 4);
    REQUIRE(history.Apply(mark));
    CHECK(UnseenFailures(history, u"A") == std::vector<KelText>{u"2", u"3", u"4"});
    const HistoryChange later[] = {Row(u"A", u"2", TransferOutcome::Completed, 2000),
                                   Row(u"A", u"3", TransferOutcome::Cancelled, 2000),
                                   Row(u"A", u"4", TransferOutcome::Completed, 2000, TransferDirection::ToMachine)};
    REQUIRE(history.Apply(later));
    CHECK(UnseenFailures(history, u"A") == std::vector<KelText>{u"3", u"4"});
    CHECK(UnseenFailures(history, u"B") == std::vector<KelText>{u"1"});

    // A clock that is years ahead deletes nothing.
    const HistoryChange early[] = {HistoryExpiry{u"A", TimeAt(2000) + std::chrono::years(50), std::chrono::years(5)}};
    REQUIRE(history.Apply(early));
    CHECK(history.PastTransfers(u"A")->size() == 7);
    const HistoryChange expiry[] = {HistoryExpiry{u"A", TimeAt(3000), std::chrono::milliseconds(1000)}};
    REQUIRE(history.Apply(expiry));
    CHECK(NumbersOf(*history.PastTransfers(u"A")) == std::vector<KelText>{u"2", u"3", u"4"});
    CHECK(history.PastTransfers(u"B")->size() == 1);
}

TEST_CASE("HistoryDatabase: one that cannot be written keeps its content, is told once and gets its rows later") {
    const TemporaryFolder folder;
    const auto path = folder / "history.db";
    SUBCASE("damaged") {
        folder.WriteFile("history.db", std::string(5000, 'x'));
    }
    SUBCASE("of another program") {
        OtherProgram(path).Run("CREATE TABLE transfers (id)");
    }
    SUBCASE("of a newer version") {
        HistoryDatabase history(path);
        const HistoryChange changes[] = {Row(u"A", u"0", TransferOutcome::Completed, 1000)};
        REQUIRE(history.Apply(changes));
        OtherProgram(path).Run("PRAGMA user_version = 2");
    }
    SUBCASE("a folder") {
        std::filesystem::create_directory(path);
    }
    const bool isFile = std::filesystem::is_regular_file(path);
    const std::string before = isFile ? folder.ReadFile("history.db") : "";
    TestedFiles tested(path);
    const LogNews first = tested.Add(Row(u"A", u"1", TransferOutcome::Failed, 1000));
    REQUIRE(first.problems.size() == 1);
    CHECK(first.problems[0].path == path);
    CHECK(first.isFailing);
    CHECK(tested.Add(Row(u"A", u"2", TransferOutcome::Failed, 2000)).problems.empty());
    CHECK(tested.WriteAfter(1min).problems.empty());
    if (isFile)
        CHECK(folder.ReadFile("history.db") == before);

    std::filesystem::remove(path);
    CHECK(tested.WriteAfter(30s).isFailing);
    const LogNews last = tested.WriteAfter(30s);
    CHECK(last.problems.empty());
    CHECK_FALSE(last.isFailing);
    CHECK(NumbersOf(*ReadHistory(path, {})) == std::vector<KelText>{u"2", u"1"});
}

TEST_CASE("HistoryDatabase: a lock of another program costs two seconds and no row") {
    const TemporaryFolder folder;
    const auto path = folder / "history.db";
    TestedFiles tested(path);
    REQUIRE(tested.Add(Row(u"A", u"1", TransferOutcome::Completed, 1000)).problems.empty());
    {
        OtherProgram other(path);
        other.Run("BEGIN IMMEDIATE");
        const auto started = std::chrono::steady_clock::now();
        CHECK(tested.Add(Row(u"A", u"2", TransferOutcome::Completed, 2000)).problems.size() == 1);
        CHECK(std::chrono::steady_clock::now() - started < 10s);
        // A reader does not wait for it.
        CHECK(NumbersOf(*ReadHistory(path, {})) == std::vector<KelText>{u"1"});
        other.Run("COMMIT");
    }
    CHECK(tested.WriteAfter(1min).problems.empty());
    CHECK(ReadHistory(path, {})->size() == 2);
}

TEST_CASE("HistoryDatabase: writers and readers at once lose nothing") {
    constexpr int writerCount = 4;
    constexpr int batchCount = 15;
    const TemporaryFolder folder;
    const auto path = folder / "history.db";
    std::vector<std::thread> writers;
    std::atomic<int> failureCount = 0;
    for (int writer = 0; writer < writerCount; ++writer) {
        writers.emplace_back([&, writer] {
            HistoryDatabase history(path);
            for (int batch = 0; batch < batchCount; ++batch) {
                const HistoryChange changes[] = {
                    Row(ToText(writer), ToText(batch), TransferOutcome::Completed, batch * 1000)};
                // A slow disk may take longer than a writer waits. Its rows then come with a later batch.
                while (!history.Apply(changes))
                    ++failureCount;
            }
        });
    }
    std::size_t seenCount = 0;
    while (seenCount < writerCount * batchCount) {
        const auto rows = ReadHistory(path, {});
        if (!rows)
            continue;
        // What one reader has seen, no later one may miss.
        REQUIRE(rows->size() >= seenCount);
        seenCount = rows->size();
    }
    for (std::thread& writer : writers)
        writer.join();
    CHECK(seenCount == writerCount * batchCount);
    CHECK(failureCount < writerCount * batchCount);
}
