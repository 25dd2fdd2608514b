#include "history/HistoryCommand.h"

#include "base/JsonText.h"
#include "harness/CommandResult.h"
#include "harness/TemporaryFolder.h"
#include "history/HistoryOutput.h"
#include "history/HistoryRows.h"
#include "history/HistorySchema.h"
#include "history/HistoryTime.h"

#include <algorithm>
#include <sstream>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;

namespace {

CommandResult Run(const std::vector<KelText>& arguments) {
    return RunCommand(RunHistoryCommand, arguments);
}

}

TEST_CASE("HistoryCommand: wrong options are refused with their reason and exit code 2") {
    const std::vector<std::pair<std::vector<KelText>, std::string>> cases = {
        {{u"--foo"}, "--foo"},
        {{u"4711"}, "4711"},
        {{u"--machine"}, "--machine needs a value"},
        {{u"--number="}, "--number needs a value"},
        {{u"--csv=1"}, "--csv takes no value"},
        {{u"--days", u"0"}, "--days"},
        {{u"--days", u"7x"}, "7x"},
        {{u"--days", u"-1"}, "-1"},
        {{u"--days", u"99999999999"}, "--days"},
        {{u"--from", u"2026-02-30"}, "2026-02-30"},
        {{u"--to", u"22.11.2026"}, "22.11.2026"},
        {{u"--from", u"2026-11-22", u"--to", u"2026-11-21"}, "--from is after --to"},
        {{u"--days", u"1", u"--to", u"2026-11-21"}, "--days"},
        {{u"--outcome", u"good"}, "good"},
        {{u"--csv", u"--json"}, "exclude"},
    };
    for (const auto& [arguments, reason] : cases) {
        const CommandResult result = Run(arguments);
        CHECK(result.exitCode == 2);
        CHECK(result.output.empty());
        CHECK_MESSAGE(result.errors.find(reason) != std::string::npos, result.errors);
    }
    const CommandResult help = Run({u"--help"});
    CHECK(help.exitCode == 0);
    CHECK(std::count(help.output.begin(), help.output.end(), '\n') <= 24);
    const CommandResult missing = Run({u"--database", u"no such file"});
    CHECK(missing.exitCode == 1);
    CHECK_FALSE(missing.errors.empty());
}

TEST_CASE("HistoryCommand: rows are chosen by local days, listed without control characters, and added up") {
    const TemporaryFolder folder;
    HistoryDatabase history(folder / "history.db");
    const auto noon = [](KelTextView day) { return ToMilliseconds(*StartOfDay(day)) + 12 * 3'600'000; };
    // The day before and the day of a change to summer time.
    auto failed = Row(u"MILL", u"\u001B[31m2", TransferOutcome::Failed, noon(u"2026-03-29"));
    failed.reason = u"line 3\nrefused";
    failed.damaged = 2;
    auto sent = Row(u"MILL", u"3", TransferOutcome::Completed, noon(u"2026-03-29"));
    sent.byteCount = 100;
    auto received = Row(u"MILL", u"3", TransferOutcome::Completed, noon(u"2026-03-29"), TransferDirection::FromMachine);
    received.byteCount = 11;
    const HistoryChange changes[] = {Row(u"MILL", u"1", TransferOutcome::Completed, noon(u"2026-03-28")), failed, sent,
                                     received, Row(u"SAW", u"4", TransferOutcome::Refused, noon(u"2026-03-30"))};
    REQUIRE(history.Apply(changes));
    const auto run = [&](std::vector<KelText> arguments) {
        arguments.insert(arguments.end(), {u"--database", FromPath(folder / "history.db")});
        const CommandResult result = Run(arguments);
        CHECK(result.exitCode == 0);
        CHECK(result.errors == "");
        return result.output;
    };
    const std::string list = run({u"--from", u"2026-03-29", u"--to=2026-03-29", u"--outcome=FAILED"});
    CHECK(list.find("2026-03-29 12:00:00  MILL     to machine   [31m2      0      0:01  failed   line 3 refused\n") !=
          std::string::npos);
    CHECK(std::count(list.begin(), list.end(), '\n') == 2);
    CHECK(run({u"--totals", u"--csv", u"--machine", u"mill"}) ==
          "day,machine,completed,failed,cancelled,refused,bytes_to_machine,bytes_from_machine,repeats,damaged,"
          "driver_errors\r\n"
          "2026-03-29,MILL,2,1,0,0,100,11,0,2,0\r\n"
          "2026-03-28,MILL,1,0,0,0,0,0,0,0,0\r\n");
    CHECK(run({u"--json", u"--number", u"5"}) == "[]\n");
    CHECK(run({u"--days=1"}).find("MILL") == std::string::npos);
}

TEST_CASE("HistoryOutput: values of CSV and JSON come back as they were") {
    struct Case {
        KelText value;
        std::string csv;
        std::string json;
    };
    const Case cases[] = {
        {u"4711", "4711", "\"4711\""},
        {u"", "", "\"\""},
        {u"a,b", "\"a,b\"", "\"a,b\""},
        {u"say \"hi\"", "\"say \"\"hi\"\"\"", "\"say \\\"hi\\\"\""},
        {u"C:\\NC\\1", "C:\\NC\\1", "\"C:\\\\NC\\\\1\""},
        {u"a\r\nb", "\"a\r\nb\"", "\"a\\u000d\\u000ab\""},
        {u"\t\u0001", "\"\t\u0001\"", "\"\\u0009\\u0001\""},
        {KelText(u"\0", 1), std::string("\"\0\"", 3), "\"\\u0000\""},
        {u" x ", "\" x \"", "\" x \""},
        {u"=1+1", "=1+1", "\"=1+1\""},
        {u"\u00E4\xD83D\xDE00", "\xC3\xA4\xF0\x9F\x98\x80", "\"\xC3\xA4\xF0\x9F\x98\x80\""},
        {u"\xDCFF\xD83D", "\xEF\xBF\xBD\xEF\xBF\xBD", "\"\\udcff\\ud83d\""},
    };
    for (const Case& each : cases) {
        CHECK(CsvValue(each.value) == each.csv);
        CHECK(JsonText(each.value) == each.json);
    }
    std::ostringstream csv;
    const TransferRecord rows[] = {Row(u"A,B", u"1", TransferOutcome::Refused, 1'700'000'000'120)};
    WriteHistory(csv, rows, HistoryForm::Csv);
    const std::string text = csv.str();
    CHECK(text.starts_with("machine,number,path,"));
    CHECK(text.find("\r\n\"A,B\",1,,to machine,refused,,") != std::string::npos);
    CHECK(text.find(".120") != std::string::npos);
    // A closed pipe.
    std::ostringstream closed;
    closed.setstate(std::ios::badbit);
    WriteHistory(closed, rows, HistoryForm::Json);
    WriteHistory(closed, rows, HistoryForm::List);
}
