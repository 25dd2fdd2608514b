#include "logging/HistoryLog.h"

#include "base/HistoryMessages.h"
#include "harness/HeldLogFiles.h"
#include "harness/ManualClock.h"
#include "harness/TemporaryFolder.h"
#include "harness/WaitUntil.h"
#include "logging/LogLines.h"
#include "logging/LogWriter.h"

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

// What a history would hold. Outlives the log that owns the history.
struct Kept {
    std::vector<TransferRecord> rows;
    bool fails = false;
    int attemptCount = 0;
};

class FakeHistory : public TransferHistory {
public:
    explicit FakeHistory(Kept& kept) : kept(kept) {}

    const std::filesystem::path& Path() const override { return path; }
    Result<> Apply(std::span<const HistoryChange> changes) override {
        ++kept.attemptCount;
        if (kept.fails)
            return Error{u"reason"};
        for (const HistoryChange& change : changes) {
            if (const auto* row = std::get_if<TransferRecord>(&change))
                kept.rows.push_back(*row);
        }
        return {};
    }
    Result<std::vector<TransferRecord>> PastTransfers(const KelText&) override {
        if (kept.fails)
            return Error{u"reason"};
        return kept.rows;
    }

private:
    Kept& kept;
    const std::filesystem::path path = "history.db";
};

HistoryRow Row(int number) {
    TransferRecord record;
    record.number = ToText(number);
    return {std::make_shared<const TransferRecord>(record)};
}

}

TEST_CASE("HistoryLog: a failure is told once, its rows wait, and the history is tried again each minute") {
    Kept kept;
    ManualClock clock;
    HistoryLog log(clock, std::make_unique<FakeHistory>(kept));
    CHECK(log.Flush());
    CHECK(kept.attemptCount == 0);
    kept.fails = true;
    log.Add(Row(1));
    CHECK_FALSE(log.Flush());
    CHECK(log.IsFailing());
    log.Add(Row(2));
    clock.Advance(59s);
    CHECK(log.Flush());
    CHECK(kept.attemptCount == 1);
    clock.Advance(1s);
    CHECK(log.Flush());
    CHECK(kept.attemptCount == 2);
    // At the end of the program the loss is told, whatever was told before.
    const auto last = log.Flush(true);
    REQUIRE_FALSE(last);
    CHECK(last.Reason().text == Filled(text::historyReason::rowsNotKept, {u"2", u"reason"}));
    CHECK(kept.attemptCount == 3);
    kept.fails = false;
    clock.Advance(1min);
    CHECK(log.Flush());
    CHECK_FALSE(log.IsFailing());
    REQUIRE(kept.rows.size() == 2);
    CHECK(kept.rows[0].number == u"1");
    // Another time is told again.
    kept.fails = true;
    log.Add(Row(3));
    CHECK_FALSE(log.Flush());
}

TEST_CASE("LogFiles: the activity log notes rows that the program could not write before its end") {
    const TemporaryFolder folder;
    Kept kept;
    kept.fails = true;
    ManualClock clock;
    LogFiles files(std::make_unique<FakeHistory>(kept));
    LogLines lines(clock);
    lines.Add(ActivityLine{folder / "activity", u"status", u"1", LocalTimeNow(), true});
    lines.Add(Row(1));
    CHECK(files.Write(lines.Records(), clock.Now()).problems.size() == 1);
    CHECK(folder.ReadFile("activity").find("history") == std::string::npos);
    lines.Records().clear();
    lines.Add(LastAttempt{});
    CHECK(files.Write(lines.Records(), clock.Now()).problems.size() == 1);
    CHECK(folder.ReadFile("activity").find("1 transfers are lost to the history: reason") != std::string::npos);
}

TEST_CASE("HistoryLog: beyond 10,000 rows the oldest are dropped, and their number is told") {
    Kept kept;
    kept.fails = true;
    ManualClock clock;
    HistoryLog log(clock, std::make_unique<FakeHistory>(kept));
    log.CountLost(2);
    for (int row = 0; row < static_cast<int>(HistoryLog::mostRows) + 5; ++row)
        log.Add(Row(row));
    CHECK_FALSE(log.Flush());
    kept.fails = false;
    clock.Advance(1min);
    const auto flushed = log.Flush();
    REQUIRE_FALSE(flushed);
    CHECK(ToUtf8(flushed.Reason().text).find(" 7 ") != std::string::npos);
    REQUIRE(kept.rows.size() == HistoryLog::mostRows);
    CHECK(kept.rows.front().number == u"5");
    CHECK(log.Flush());
}

TEST_CASE("HistoryLog: past transfers are read before the rows of this run, as soon as the history can be read") {
    Kept kept;
    ManualClock clock;
    HistoryLog log(clock, std::make_unique<FakeHistory>(kept));
    log.Add(Row(1));
    CHECK(log.Flush());
    CHECK_FALSE(log.TakePastTransfers());
    kept.fails = true;
    log.Start(u"MACHINE");
    log.Add(Row(2));
    CHECK_FALSE(log.Flush());
    CHECK_FALSE(log.TakePastTransfers());
    kept.fails = false;
    clock.Advance(1min);
    CHECK(log.Flush());
    const auto past = log.TakePastTransfers();
    REQUIRE(past);
    CHECK(past->size() == 1);
    CHECK_FALSE(log.TakePastTransfers());
    CHECK(kept.rows.size() == 2);
}

TEST_CASE("LogWriter: a history that hangs delays no caller, and its memory stays bounded") {
    constexpr int rowCount = 50'000;
    Kept kept;
    ManualClock clock;
    const auto disk = std::make_shared<HeldDisk>();
    {
        LogWriter writer(std::make_unique<HeldLogFiles>(disk, std::make_unique<FakeHistory>(kept)));
        LogLines lines(clock);
        lines.Add(HistoryStart{u"MACHINE"});
        writer.HandOver(lines.Records(), clock.Now());
        REQUIRE(WaitUntil([&] { return disk->IsAwaited(); }));
        for (int row = 0; row < rowCount; ++row)
            lines.Add(Row(row));
        writer.HandOver(lines.Records(), clock.Now());
        CHECK(disk->IsAwaited());
        CHECK(writer.UnwrittenLines()[static_cast<std::size_t>(LogKind::History)] == rowCount);
        disk->Release();
        REQUIRE(writer.WaitUntilWritten(60s));
        const auto news = writer.TakeNews();
        REQUIRE(news);
        REQUIRE(news->pastTransfers);
        CHECK(news->pastTransfers->empty());
        // The rows without room are told by their number.
        REQUIRE(news->problems.size() == 1);
        const KelText lost = ToText(rowCount - static_cast<std::int64_t>(kept.rows.size()));
        CHECK(news->problems[0].reason.text.find(u" " + lost + u" ") != KelText::npos);
    }
    REQUIRE(kept.rows.size() > 1000);
    CHECK(kept.rows.size() < rowCount);
    CHECK(kept.rows[1].number == u"1");
}
