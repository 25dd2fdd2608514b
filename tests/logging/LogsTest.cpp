#include "harness/ManualClock.h"
#include "harness/TemporaryFolder.h"
#include "logging/ActivityLog.h"
#include "logging/CommsLog.h"

#include <regex>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

TEST_CASE("CommsLog: each line has both times, in long runs too") {
    const TemporaryFolder folder;
    ManualClock clock;
    LastLogged last;
    CommsLog log(clock, last);
    REQUIRE(log.Open(folder / "log"));
    log.LogLine("start", false);
    clock.Advance(65250ms);
    log.LogLine("one", false);
    clock.Advance(250ms);
    log.LogLine("two", false);
    clock.Advance(100h - 65500ms - 1us);
    log.LogLine("three", false);
    clock.Advance(1us);
    log.LogLine("%s four", false);
    CHECK(log.Close());
    CHECK(folder.ReadFile("log") == "00:00:00.000000 (+0.000000) start\r\n"
                                    "00:01:05.250000 (+65.250000) one\r\n"
                                    "00:01:05.500000 (+0.250000) two\r\n"
                                    "99:59:59.999999 (+359934.499999) three\r\n"
                                    "100:00:00.000000 (+0.000001) %s four\r\n");
}

TEST_CASE("CommsLog, ActivityLog: a repeated line is written only if forced, and both share the last line") {
    const TemporaryFolder folder;
    ManualClock clock;
    LastLogged last;
    CommsLog comms(clock, last);
    ActivityLog activity(last);
    REQUIRE(comms.Open(folder / "comms"));
    comms.LogLine("same", false);
    comms.LogLine("same", false);
    comms.LogLine("same", true);
    comms.LogLine("", true);
    activity.LogStatusChange(folder / "activity", u"same", u"");
    activity.LogStatusChange(folder / "activity", u"status", u"123");
    activity.LogStatusChange(folder / "activity", u"status", u"123");
    comms.LogLine("status", false);
    comms.LogLine("other", false);
    activity.LogStatusChange(folder / "activity", u"status \u00E4", u"1234567890");
    CHECK(activity.Flush());
    CHECK(comms.Close());
    CHECK(folder.ReadFile("comms") == "00:00:00.000000 (+0.000000) same\r\n00:00:00.000000 (+0.000000) same\r\n"
                                      "00:00:00.000000 (+0.000000) other\r\n");
    const std::regex lines("     123 \\S.* status\r\n1234567890 \\S.* status \xC3\xA4\r\n");
    CHECK(std::regex_match(folder.ReadFile("activity"), lines));
}

TEST_CASE("ActivityLog: a failure is reported once for each status, and the log is tried again") {
    const TemporaryFolder folder;
    LastLogged last;
    ActivityLog log(last);
    const auto attempt = [&](const KelText& status) {
        log.LogStatusChange(folder / "missing/log", status, u"1");
        return log.Flush();
    };
    CHECK_FALSE(attempt(u"first"));
    CHECK(attempt(u"first"));
    CHECK_FALSE(attempt(u"second"));
    CHECK(last.text.empty());
    log.LogStatusChange(folder / "missing/log", u"a", u"");
    log.LogStatusChange(folder / "missing/log", u"b", u"");
    CHECK_FALSE(log.Flush());
    CHECK(log.HasFailed());
    CHECK(last.text.empty());
    std::filesystem::create_directory(folder / "missing");
    CHECK(attempt(u"second"));
    CHECK(folder.ReadFile("missing/log").ends_with(" second\r\n"));
    CHECK(last.text == "second");
}

TEST_CASE("CommsLog: a rolling log fills two files at most, and keeps earlier lines") {
    const TemporaryFolder folder;
    const std::string before = "00:00:00.000000 (+0.000000) of the run before\r\n";
    folder.WriteFile("log", before);
    folder.WriteFile("log.1", "");
    ManualClock clock;
    LastLogged last;
    CommsLog log(clock, last);
    REQUIRE(log.OpenRolling(folder / "log", 1000));
    CommsLog others(clock, last);
    for (int line = 0; line < 200; ++line) {
        log.LogLine("line " + std::to_string(line), true);
        REQUIRE(log.Flush());
        CHECK_FALSE(others.OpenRolling(folder / "log", 1000));
        if (line == 0)
            CHECK(folder.ReadFile("log") == before + "00:00:00.000000 (+0.000000) line 0\r\n");
        const std::string present = std::filesystem::exists(folder / "log") ? folder.ReadFile("log") : "";
        CHECK(present.size() < 1000);
        CHECK(folder.ReadFile("log.1").size() < 1100);
        // No line is lost between the two files.
        CHECK((folder.ReadFile("log.1") + present).ends_with(" line " + std::to_string(line) + "\r\n"));
    }
}

TEST_CASE("CommsLog: a file that is no comms log is not rolled over") {
    const TemporaryFolder folder;
    ManualClock clock;
    LastLogged last;
    CommsLog log(clock, last);
    for (const char* content : {"[Port Settings]\nport=COM1\n", "x", "00:00:00.00000x (+0.000000)"}) {
        folder.WriteFile("file", content);
        CHECK_FALSE(log.OpenRolling(folder / "file", 10));
        CHECK(folder.ReadFile("file") == content);
    }
    CHECK_FALSE(log.OpenRolling(folder.Path(), 10));
    CHECK(std::filesystem::is_directory(folder.Path()));
    folder.WriteFile("empty", "");
    CHECK(log.OpenRolling(folder / "empty", 10));
}

TEST_CASE("CommsLog: a log that loses its file ends, and reports it once") {
    const TemporaryFolder folder;
    ManualClock clock;
    LastLogged last;
    CommsLog log(clock, last);
    CHECK_FALSE(log.Open(folder / "missing/log"));
    CHECK_FALSE(log.Open(folder.Path()));
    std::filesystem::create_directory(folder / "taken away");
    REQUIRE(log.Open(folder / "taken away/log"));
    std::filesystem::rename(folder / "taken away/log", folder / "taken away/moved");
    folder.WriteFile("taken away/log", "another's");
    clock.Advance(2s);
    log.LogLine("lost", true);
    CHECK_FALSE(log.Flush());
    CHECK_FALSE(log.IsOpen());
    log.LogLine("later", true);
    CHECK(log.Flush());
}
