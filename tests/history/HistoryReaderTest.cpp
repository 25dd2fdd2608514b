#include "history/HistoryReader.h"

#include "harness/TemporaryFolder.h"
#include "history/HistoryRows.h"

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;

TEST_CASE("HistoryReader: a filter restricts machine, number, time and outcome, and combines them") {
    const TemporaryFolder folder;
    const auto path = folder / "history.db";
    HistoryDatabase history(path);
    const HistoryChange changes[] = {
        Row(u"LASER 2", u"4711", TransferOutcome::Completed, 1000),
        Row(u"LASER 2", u"47", TransferOutcome::Failed, 2000), Row(u"MILL", u"4712", TransferOutcome::Completed, 3000),
        Row(u"MILL", u"4_11", TransferOutcome::Refused, 4000), Row(u"MILL", u"%", TransferOutcome::Cancelled, 5000)};
    REQUIRE(history.Apply(changes));
    const auto numbers = [&](const HistoryFilter& filter) { return NumbersOf(*ReadHistory(path, filter)); };
    using Numbers = std::vector<KelText>;
    CHECK(numbers({}) == Numbers{u"%", u"4_11", u"4712", u"47", u"4711"});
    CHECK(numbers({.machine = u"laser 2"}) == Numbers{u"47", u"4711"});
    CHECK(numbers({.machine = u"LASER"}).empty());
    CHECK(numbers({.number = u"47"}) == Numbers{u"47"});
    CHECK(numbers({.number = u"47*"}) == Numbers{u"4712", u"47", u"4711"});
    CHECK(numbers({.number = u"4?11"}) == Numbers{u"4_11", u"4711"});
    // These mean something else to the database.
    CHECK(numbers({.number = u"4_11"}) == Numbers{u"4_11"});
    CHECK(numbers({.number = u"%"}) == Numbers{u"%"});
    CHECK(numbers({.number = u"' OR 1 --"}).empty());
    CHECK(numbers({.from = TimeAt(2000), .before = TimeAt(4000)}) == Numbers{u"4712", u"47"});
    CHECK(numbers({.outcome = TransferOutcome::Completed}) == Numbers{u"4712", u"4711"});
    CHECK(numbers({.machine = u"MILL", .number = u"4*", .before = TimeAt(4000)}) == Numbers{u"4712"});
    CHECK(numbers({.mostRows = 2}) == Numbers{u"%", u"4_11"});
}

TEST_CASE("HistoryReader: a missing, damaged or foreign file gives its reason and stays as it is") {
    const TemporaryFolder folder;
    CHECK_FALSE(ReadHistory(folder / "missing.db", {}));
    CHECK_FALSE(std::filesystem::exists(folder / "missing.db"));
    for (const std::string& content : {std::string(5000, 'x'), std::string("SQLite format 3\0 and no more", 28)}) {
        folder.WriteFile("history.db", content);
        const auto rows = ReadHistory(folder / "history.db", {});
        REQUIRE_FALSE(rows);
        CHECK_FALSE(rows.Reason().text.empty());
        CHECK(folder.ReadFile("history.db") == content);
    }
    // A writer has just made it.
    folder.WriteFile("history.db", "");
    CHECK(ReadHistory(folder / "history.db", {})->empty());
}

TEST_CASE("HistoryReader: a newer version is read as far as it keeps the columns") {
    const TemporaryFolder folder;
    const auto path = folder / "history.db";
    HistoryDatabase history(path);
    const HistoryChange changes[] = {Row(u"A", u"1", TransferOutcome::Completed, 1000)};
    REQUIRE(history.Apply(changes));
    auto other = SqliteDatabase::Open(path, SqliteDatabase::Access::ReadWrite);
    REQUIRE(other);
    REQUIRE(other->Run("ALTER TABLE transfers ADD COLUMN tool TEXT; PRAGMA user_version = 2"));
    CHECK(ReadHistory(path, {})->size() == 1);
    REQUIRE(other->Run("ALTER TABLE transfers RENAME COLUMN bytes TO octets"));
    const auto rows = ReadHistory(path, {});
    REQUIRE_FALSE(rows);
    CHECK(ToUtf8(rows.Reason().text).find("newer") != std::string::npos);
}
