#include "harness/ManualClock.h"
#include "harness/TemporaryFolder.h"
#include "logging/ActivityLog.h"
#include "logging/CommsLog.h"

#include <algorithm>
#include <regex>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

void LogStatus(ActivityLog& log, const std::filesystem::path& path, const KelText& status, const KelText& number,
               bool force) {
    log.Add({path, status, number, LocalTimeNow(), force});
}

}

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
    ActivityLog activity(clock, last);
    REQUIRE(comms.Open(folder / "comms"));
    comms.LogLine("same", false);
    comms.LogLine("same", false);
    comms.LogLine("same", true);
    comms.LogLine("", true);
    LogStatus(activity, folder / "activity", u"same", u"", false);
    LogStatus(activity, folder / "activity", u"status", u"123", false);
    LogStatus(activity, folder / "activity", u"status", u"123", false);
    LogStatus(activity, folder / "activity", u"status", u"123", true);
    comms.LogLine("status", false);
    comms.LogLine("other", false);
    LogStatus(activity, folder / "activity", u"status \u00E4", u"1234567890", true);
    CHECK(activity.Flush());
    CHECK(comms.Close());
    CHECK(folder.ReadFile("comms") == "00:00:00.000000 (+0.000000) same\r\n00:00:00.000000 (+0.000000) same\r\n"
                                      "00:00:00.000000 (+0.000000) other\r\n");
    const std::regex lines("     123 \\S.* status\r\n     123 \\S.* status\r\n1234567890 \\S.* status \xC3\xA4\r\n");
    CHECK(std::regex_match(folder.ReadFile("activity"), lines));
}

TEST_CASE("ActivityLog: a failure is told once, its lines wait, and the log is tried again each minute") {
    const TemporaryFolder folder;
    ManualClock clock;
    LastLogged last;
    ActivityLog log(clock, last);
    const auto attempt = [&](const KelText& status) {
        LogStatus(log, folder / "missing/log", status, u"1", true);
        return static_cast<bool>(log.Flush());
    };
    CHECK_FALSE(attempt(u"first"));
    CHECK(attempt(u"first"));
    clock.Advance(1min);
    CHECK(attempt(u"second"));
    std::filesystem::create_directory(folder / "missing");
    clock.Advance(59s);
    CHECK(attempt(u"third"));
    CHECK_FALSE(std::filesystem::exists(folder / "missing/log"));
    clock.Advance(1s);
    CHECK(log.Flush());
    const std::regex lines("( {7}1 \\S.* first\r\n){2} {7}1 .* second\r\n {7}1 .* third\r\n");
    CHECK(std::regex_match(folder.ReadFile("missing/log"), lines));
    // Good again, so the next failure is told again. The end of the program tries once more, whatever the time.
    std::filesystem::rename(folder / "missing", folder / "away");
    CHECK_FALSE(attempt(u"fourth"));
    std::filesystem::rename(folder / "away", folder / "missing");
    CHECK(log.Flush());
    CHECK(log.Flush(true));
    CHECK(folder.ReadFile("missing/log").ends_with(" fourth\r\n"));
}

TEST_CASE("ActivityLog: lines that wait too long are counted, and a new path is tried at once") {
    const TemporaryFolder folder;
    ManualClock clock;
    LastLogged last;
    ActivityLog log(clock, last);
    for (std::size_t line = 0; line < ActivityLog::mostLines + 5; ++line) {
        LogStatus(log, folder / "missing/log", u"status", u"1", true);
        (void)log.Flush();
    }
    LogStatus(log, folder / "log", u"last", u"2", true);
    CHECK(log.Flush());
    const std::string written = folder.ReadFile("log");
    CHECK(std::count(written.begin(), written.end(), '\n') == ActivityLog::mostLines + 1);
    CHECK(written.substr(0, written.find('\r')).ends_with(" ... 6 lines not written ..."));
    CHECK(written.ends_with(" last\r\n"));
}

TEST_CASE("ActivityLog, CommsLog: a line that was torn by the end of a program is ended first") {
    const TemporaryFolder folder;
    folder.WriteFile("activity", "       7 12:00 half a li");
    ManualClock clock;
    LastLogged last;
    ActivityLog activity(clock, last);
    LogStatus(activity, folder / "activity", u"whole", u"8", true);
    CHECK(activity.Flush());
    CHECK(folder.ReadFile("activity").starts_with("       7 12:00 half a li\r\n       8 "));
    folder.WriteFile("comms", "00:00:00.000000 (+0.000000) ha");
    CommsLog comms(clock, last);
    REQUIRE(comms.OpenRolling(folder / "comms", 1000));
    comms.LogLine("whole", true);
    CHECK(comms.Close());
    CHECK(folder.ReadFile("comms") == "00:00:00.000000 (+0.000000) ha\r\n00:00:00.000000 (+0.000000) whole\r\n");
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
    for (const char* content :
         {"[Port Settings]\nport=COM1\n", "x", "00:00:00.00000x (+0.000000)", "0:00:00.000000 (+0.000000)", "100"}) {
        folder.WriteFile("file", content);
        CHECK_FALSE(log.OpenRolling(folder / "file", 10));
        CHECK(folder.ReadFile("file") == content);
    }
    CHECK_FALSE(log.OpenRolling(folder.Path(), 10));
    CHECK(std::filesystem::is_directory(folder.Path()));
    for (const char* content : {"", "00:00:00.000000 (+0.000000) x\r\n", "1234:00:00.000000 (+0.000000) x\r\n"}) {
        folder.WriteFile("log", content);
        CHECK(log.OpenRolling(folder / "log", 1000));
        CHECK(log.Close());
    }
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
