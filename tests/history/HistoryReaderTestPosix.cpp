#include "harness/OtherUserPosix.h"
#include "harness/TemporaryFolder.h"
#include "history/HistoryReader.h"
#include "history/HistoryRows.h"

#include <csignal>

#include <doctest/doctest.h>
#include <sys/resource.h>
#include <sys/wait.h>

using namespace tarvin;
using namespace tarvin::test;

namespace {

void Allow(const std::filesystem::path& path, unsigned mode) {
    std::filesystem::permissions(path, static_cast<std::filesystem::perms>(mode));
}

}

TEST_CASE("HistoryReader: a user who may not write the folder reads beside a writer, without one and after its crash") {
    const TemporaryFolder folder;
    const auto path = folder / "history.db";
    HistoryDatabase history(path);
    const HistoryChange changes[] = {Row(u"A", u"1", TransferOutcome::Completed, 1000)};
    REQUIRE(history.Apply(changes));
    Allow(folder.Path(), 0555);
    const auto rowCount = [&] {
        const OtherUser other;
        const auto rows = ReadHistory(path, {});
        return rows ? rows->size() : 0;
    };
    CHECK(rowCount() == 1);
    {
        auto writer = SqliteDatabase::Open(path, SqliteDatabase::Access::ReadWrite);
        REQUIRE(writer->Run("INSERT INTO transfers SELECT id + 1, machine, number, path, direction, outcome, reason, "
                            "begin_ms, end_ms, bytes, bytes_total, lines, lines_total, repeats, damaged, "
                            "driver_errors, sha256, seen FROM transfers"));
        REQUIRE(std::filesystem::exists(folder / "history.db-wal"));
        CHECK(rowCount() == 2);
        // What a killed writer leaves, apart from the memory that it shares.
        std::filesystem::copy(folder / "history.db-wal", folder / "kept");
    }
    std::filesystem::rename(folder / "kept", folder / "history.db-wal");
    Allow(folder / "history.db-wal", 0600);
    CHECK(rowCount() >= 1);
    {
        const OtherUser other;
        HistoryDatabase readOnly(path);
        const auto applied = readOnly.Apply(changes);
        CHECK_FALSE(applied);
        CHECK(readOnly.PastTransfers(u"A"));
    }
    Allow(folder.Path(), 0755);
}

TEST_CASE("HistoryDatabase: a full disk takes no half batch") {
    const TemporaryFolder folder;
    HistoryDatabase history(folder / "history.db");
    std::vector<HistoryChange> changes = {Row(u"A", u"1", TransferOutcome::Completed, 1000)};
    REQUIRE(history.Apply(changes));
    changes.clear();
    for (int index = 0; index < 2000; ++index)
        changes.push_back(Row(u"A", ToText(index), TransferOutcome::Completed, 2000));
    {
        struct rlimit before = {};
        RequireCall(::getrlimit(RLIMIT_FSIZE, &before) == 0, "getrlimit");
        struct rlimit small = before;
        small.rlim_cur = 100'000;
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        RequireCall(::setrlimit(RLIMIT_FSIZE, &small) == 0, "setrlimit");
        const auto applied = history.Apply(changes);
        RequireCall(::setrlimit(RLIMIT_FSIZE, &before) == 0, "setrlimit");
        std::signal(SIGXFSZ, handler);
        CHECK_FALSE(applied);
    }
    CHECK(ReadHistory(folder / "history.db", {})->size() == 1);
    REQUIRE(history.Apply(changes));
    CHECK(ReadHistory(folder / "history.db", {})->size() == 2001);
}

TEST_CASE("HistoryDatabase: several processes write one file") {
    constexpr int processCount = 3;
    constexpr int batchCount = 20;
    const TemporaryFolder folder;
    const auto path = folder / "history.db";
    std::vector<pid_t> children;
    for (int process = 0; process < processCount; ++process) {
        const pid_t child = ::fork();
        RequireCall(child >= 0, "fork");
        if (child == 0) {
            HistoryDatabase history(path);
            bool isDone = true;
            for (int batch = 0; batch < batchCount; ++batch) {
                const HistoryChange changes[] = {Row(ToText(process), ToText(batch), TransferOutcome::Failed, 1000)};
                // A slow disk may take longer than a writer waits.
                int attemptCount = 0;
                while (!history.Apply(changes) && ++attemptCount < 10)
                    continue;
                isDone &= attemptCount < 10;
            }
            ::_exit(isDone ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        RequireCall(::waitpid(child, &status, 0) == child, "waitpid");
        CHECK(status == 0);
    }
    const auto rows = ReadHistory(path, {});
    REQUIRE(rows);
    CHECK(rows->size() == processCount * batchCount);
}
