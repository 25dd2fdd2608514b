#include "logging/LogWriter.h"

#include "harness/HeldLogFiles.h"
#include "harness/ManualClock.h"
#include "harness/TemporaryFolder.h"
#include "harness/WaitUntil.h"
#include "logging/LogLines.h"

#include <algorithm>
#include <string>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

struct TestedWriter {
    explicit TestedWriter(std::unique_ptr<LogFiles> files) : writer(std::move(files)) { lines.SwitchCommsLog(true); }

    void HandOver() { writer.HandOver(lines.Records(), clock.Now()); }
    void LogStatus(const std::filesystem::path& path, const KelText& status) {
        lines.Add(ActivityLine{path, status, u"1", LocalTimeNow(), true});
    }

    const TemporaryFolder folder;
    ManualClock clock;
    LogLines lines{clock};
    LogWriter writer;
};

std::ptrdiff_t LineCount(const std::string& text) {
    return std::count(text.begin(), text.end(), '\n');
}

}

TEST_CASE("LogWriter: lines for which a held disk leaves no room are counted where they are missing") {
    const auto disk = std::make_shared<HeldDisk>();
    TestedWriter tested(std::make_unique<HeldLogFiles>(disk));
    tested.lines.Add(CommsLogStart{tested.folder / "comms", 0, {}});
    tested.HandOver();
    REQUIRE(WaitUntil([&] { return disk->IsAwaited(); }));
    // Ten megabytes, a kilobyte each.
    constexpr int sentCount = 10000;
    for (int line = 0; line < sentCount; ++line) {
        tested.lines.LogLine(std::to_string(line) + std::string(1000, ' '), true);
        tested.HandOver();
    }
    // The comms log leaves the activity log its room.
    tested.LogStatus(tested.folder / "activity", u"status");
    tested.clock.Advance(5s);
    tested.HandOver();
    CHECK(disk->IsAwaited());
    CHECK(tested.writer.UnwrittenLines() == std::array<std::int64_t, logKindCount>{sentCount, 1});
    disk->Release();
    REQUIRE(tested.writer.WaitUntilWritten(20s));
    tested.lines.LogLine("after", true);
    tested.HandOver();
    REQUIRE(tested.writer.WaitUntilWritten(20s));
    CHECK(tested.writer.UnwrittenLines() == std::array<std::int64_t, logKindCount>{});
    CHECK(tested.folder.ReadFile("activity").ends_with(" status\r\n"));
    const std::string log = tested.folder.ReadFile("comms");
    CHECK(log.size() < LogWriter::longestWaiting);
    CHECK(log.size() > LogWriter::longestWaiting / 2);
    // The start and the two last lines stand beside the kept ones.
    const auto keptCount = LineCount(log) - 3;
    CHECK(log.find(") " + std::to_string(keptCount - 1) + "  ") != std::string::npos);
    CHECK(log.ends_with("00:00:00.000000 (+0.000000) ... " + std::to_string(sentCount - keptCount) +
                        " lines not logged ...\r\n00:00:05.000000 (+5.000000) after\r\n"));
}

TEST_CASE("LogWriter: lines that have waited roll over where they would have without waiting") {
    std::string files[2];
    for (const bool isSlow : {false, true}) {
        TestedWriter tested(std::make_unique<LogFiles>());
        tested.lines.Add(CommsLogStart{tested.folder / "log", 2000, {"report"}});
        for (int line = 0; line < 200; ++line) {
            tested.clock.Advance(1ms);
            tested.lines.LogLine("line " + std::to_string(line), true);
            if (isSlow)
                continue;
            tested.HandOver();
            REQUIRE(tested.writer.WaitUntilWritten(20s));
        }
        tested.HandOver();
        REQUIRE(tested.writer.WaitUntilWritten(20s));
        files[isSlow] = tested.folder.ReadFile("log.1") + tested.folder.ReadFile("log");
    }
    CHECK(LineCount(files[0]) > 40);
    CHECK(files[0] == files[1]);
}

TEST_CASE("LogWriter: everything is written before it ends, and a problem stays until it is taken") {
    const TemporaryFolder folder;
    {
        TestedWriter tested(std::make_unique<LogFiles>());
        tested.lines.Add(CommsLogStart{folder / "missing/log", 0, {}});
        tested.HandOver();
        REQUIRE(tested.writer.WaitUntilWritten(20s));
        tested.lines.Add(CommsLogStart{folder / "log", 0, {}});
        tested.HandOver();
        REQUIRE(tested.writer.WaitUntilWritten(20s));
        const auto news = tested.writer.TakeNews();
        REQUIRE(news);
        CHECK(news->isCommsLogOpen);
        REQUIRE(news->problems.size() == 1);
        CHECK(news->problems[0].path == folder / "missing/log");
        CHECK_FALSE(tested.writer.TakeNews());
        for (int line = 0; line < 1000; ++line) {
            tested.lines.LogLine("line", true);
            tested.HandOver();
        }
    }
    CHECK(LineCount(folder.ReadFile("log")) == 1001);
}
