#include "harness/EngineHarness.h"
#include "harness/HeldLogFiles.h"
#include "harness/WaitUntil.h"
#include "protocol/RawProtocol.h"

#include <algorithm>
#include <regex>
#include <sstream>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

using Strings = std::vector<std::string>;

// The lines without their times and without the report.
Strings LinesOf(const std::string& log) {
    Strings lines;
    std::istringstream stream(log);
    for (std::string line; std::getline(stream, line);) {
        REQUIRE(line.ends_with('\r'));
        lines.push_back(line.substr(line.find(") ") + 2));
        lines.back().pop_back();
    }
    REQUIRE(lines.size() > 9);
    CHECK(lines[0] == "Start of logging");
    lines.erase(lines.begin() + 1, lines.begin() + 9);
    return lines;
}

constexpr char quickProfile[] = "[Port Settings]\ntransmit delay=0\n";

void SwitchActivityLogOn(EngineHarness<RawProtocol>& harness, std::string_view file) {
    auto settings = harness.engine->Settings();
    settings.writeLog = 1;
    settings.logFile = FromPath(harness.folder / file);
    harness.engine->ApplySettings(settings);
}

}

TEST_CASE("Logs: the comms log holds every byte on the line, and how the link was set up") {
    EngineHarness<RawProtocol> harness("[Port Settings]\nflow control=None\n[Files]\nupload path=C:\\up%i\n");
    harness.Open();
    harness.engine->StartCommsLog(harness.folder / "log");
    CHECK(harness.Snapshot().isCommsLogOn);
    harness.SendText("AAAKq\r");
    harness.SendText("AAAKq\r");
    harness.Exchange("A\r\n\x7F\x80");
    harness.Exchange("A\r\n\x7F\x80");
    harness.engine->Output().SendChar(0x12, false);
    harness.engine->Output().SendChar('x', true);
    harness.SendText("y");
    harness.line.holds.cts = true;
    harness.Exchange("\x13");
    harness.Run(200ms);
    CHECK(harness.Snapshot().isCommsLogOn);
    harness.line.holds.cts = false;
    harness.Run(10ms);
    harness.engine->Output().SendChar('z', true);
    harness.engine->StopCommsLog();
    harness.Run(600ms);
    CHECK_FALSE(harness.Snapshot().isCommsLogOn);
    harness.Exchange("unlogged");
    const std::string log = harness.folder.ReadFile("log");
    CHECK(LinesOf(log) == Strings{"Start of logging", "TX AAAKq[0d]", "RX A[0d][0a]\x7F[80]", "RX A[0d][0a]\x7F[80]",
                                  "TX [12]x", "TX y", "CTS Hold=1  ", "RX [13]", "XOff Hold=1  ", "CTS Hold=0  ",
                                  "TX z", "End of Logging"});
    for (const char* part :
         {"==================== Version & OS ======================\r\n", "26.0.0.2715 2026 - ",
          "Port=COM1 baud=2400 parity=None data=8 stop=1 flow=None\r\n",
          "Upload path=C:\\up%i Download path=", "Transmit delay=2 Character Delay=0 Line Delay=0\r\n",
          "Send SOT=0 SOT Character=18 Send EOT=0 EOT Character=4\r\n"})
        CHECK_MESSAGE(log.find(part) != std::string::npos, part);
    CHECK(harness.engine->Settings().commsLogFileName == FromPath(harness.folder / "log"));
}

TEST_CASE("Logs: blocks are logged in pieces when the other side speaks, or when the log ends") {
    for (const bool isAnswered : {true, false}) {
        EngineHarness<RawProtocol> harness;
        harness.Open();
        harness.engine->StartRollingCommsLog(harness.folder / "log", 1 << 20);
        CHECK(harness.engine->Settings().commsLogFileName.empty());
        harness.folder.WriteFile("NC/part", std::string(3500, 'x'));
        harness.engine->SendFile(harness.folder / "NC/part");
        harness.Run(1s);
        if (isAnswered)
            harness.Exchange("ok");
        harness.engine->Close();
        Strings expected = {"Start of logging",     "TX " + std::string(997, 'x'), std::string(1000, 'x'),
                            std::string(1000, 'x'), std::string(503, 'x'),         "Application Terminated"};
        if (isAnswered)
            expected.insert(expected.end() - 1, "RX ok");
        CHECK(LinesOf(harness.folder.ReadFile("log")) == expected);
    }
}

TEST_CASE("Logs: a log that cannot be written is told once, and the transfer goes on") {
    EngineHarness<RawProtocol> harness;
    harness.Open();
    SwitchActivityLogOn(harness, "missing/activity");
    std::filesystem::create_directory(harness.folder / "logs");
    harness.engine->StartCommsLog(harness.folder / "logs/log");
    harness.Run(200ms);
    std::filesystem::rename(harness.folder / "logs/log", harness.folder / "logs/taken away");
    std::filesystem::create_directory(harness.folder / "logs/log");
    harness.folder.WriteFile("NC/part", std::string(5000, 'x'));
    harness.engine->SendFile(harness.folder / "NC/part");
    harness.line.bytesPerSecond = 1000;
    std::string sent;
    for (int second = 0; second < 10; ++second)
        sent += harness.Run(1s) + harness.Exchange("?");
    CHECK(sent == std::string(5000, 'x'));
    // One box for the trace, and one for the status that ends the transfer.
    const std::string problem = "Problem: Unable to write to log file\n";
    REQUIRE(harness.events.boxes.size() == 2);
    CHECK(harness.events.boxes[0].starts_with(problem + (harness.folder / "logs/log").string() + ": "));
    CHECK(harness.events.boxes[1].starts_with(problem + (harness.folder / "missing/activity").string() + ": "));
    CHECK_FALSE(harness.Snapshot().isCommsLogOn);
}

TEST_CASE("Logs: a log that another program holds is tried again each minute, and notes its gap") {
    EngineHarness<RawProtocol> harness;
    harness.Open();
    LastLogged last;
    CommsLog other(harness.clock, last);
    REQUIRE(other.OpenRolling(harness.folder / "log", 1 << 20));
    harness.engine->StartRollingCommsLog(harness.folder / "log", 1 << 20);
    harness.Run(3min);
    CHECK(harness.events.boxes.size() == 1);
    CHECK_FALSE(harness.Snapshot().isCommsLogOn);
    CHECK(other.Close());
    harness.Run(61s);
    CHECK(harness.Snapshot().isCommsLogOn);
    harness.Exchange("again");
    // Lost once more while it is written, for more than a minute.
    std::filesystem::rename(harness.folder / "log", harness.folder / "moved");
    std::filesystem::create_directory(harness.folder / "log");
    harness.Run(10s);
    harness.Exchange("lost");
    harness.Run(1min);
    std::filesystem::remove(harness.folder / "log");
    harness.Run(1min);
    harness.Exchange("back");
    harness.engine->Close();
    CHECK(harness.events.boxes.size() == 2);
    const Strings first = LinesOf(harness.folder.ReadFile("moved"));
    REQUIRE(first.size() == 3);
    CHECK(std::regex_match(
        first[1], std::regex("\\.\\.\\. nothing logged for [12]\\d\\d seconds: another program writes it \\(.*")));
    CHECK(first[2] == "RX again");
    const std::string second = harness.folder.ReadFile("log");
    CHECK(std::regex_search(second, std::regex("nothing logged for 6\\d seconds: it was moved or deleted")));
    CHECK(second.find(") RX back\r\n") != std::string::npos);
}

TEST_CASE("Logs: each refusal is a line of the activity log, however often the same comes") {
    EngineHarness<RawProtocol> harness;
    harness.Open();
    SwitchActivityLogOn(harness, "activity");
    for (int request = 0; request < 3; ++request) {
        harness.engine->SendFile(harness.folder / "NC/8");
        harness.Run(request == 0 ? 5s : 0s);
    }
    harness.Run(1s);
    const std::string log = harness.folder.ReadFile("activity");
    CHECK(std::count(log.begin(), log.end(), '\n') == 3);
}

TEST_CASE("Logs: the activity log gets the status that ends a transfer, with its file") {
    EngineHarness<RawProtocol> harness;
    harness.Open();
    SwitchActivityLogOn(harness, "activity");
    harness.engine->StartCommsLog(harness.folder / "comms");
    harness.folder.WriteFile("NC/7", "xyz");
    harness.engine->SendFile(harness.folder / "NC/7");
    for (int second = 0; second < 5; ++second) {
        harness.Run(1s);
        // Traffic changes the line that was logged last, but not the status.
        harness.Exchange("noise");
    }
    harness.engine->SendFile(harness.folder / "NC/8");
    harness.Run(1s);
    const std::string log = harness.folder.ReadFile("activity");
    const std::string folder = (harness.folder / "NC").string();
    CHECK(std::count(log.begin(), log.end(), '\n') == 2);
    CHECK(log.starts_with("       7 "));
    CHECK(log.find(" Download Completed " + folder + "/7 - 3 bytes\r\n       8 ") != std::string::npos);
    CHECK(log.ends_with(" Download could not open/read from " + folder + "/8\r\n"));
}

TEST_CASE("Logs: every file of a rolling log tells how the link was set up") {
    EngineHarness<RawProtocol> harness;
    harness.Open();
    harness.engine->StartRollingCommsLog(harness.folder / "log", 3000);
    for (int line = 0; line < 200; ++line)
        harness.Exchange("line " + std::to_string(line));
    harness.engine->StopCommsLog();
    harness.Settle();
    for (const char* name : {"log", "log.1"}) {
        const std::string log = harness.folder.ReadFile(name);
        CHECK(log.find("Version & OS") < 500);
        CHECK(log.find("Port=COM1 baud=2400") != std::string::npos);
    }
}

TEST_CASE("Logs: a disk that takes nothing delays no answer, and the log is whole afterwards") {
    const auto disk = std::make_shared<HeldDisk>();
    EngineHarness<RawProtocol> harness(quickProfile, std::make_unique<HeldLogFiles>(disk));
    harness.Open();
    SwitchActivityLogOn(harness, "activity");
    harness.engine->StartCommsLog(harness.folder / "log");
    harness.folder.WriteFile("NC/7", std::string(3000, 'x'));
    harness.line.bytesPerSecond = 1000;
    harness.engine->SendFile(harness.folder / "NC/7");
    CHECK(harness.Run(10s).size() == 3000);
    CHECK(harness.Snapshot().isCommsLogOn);
    harness.Exchange("noise");
    REQUIRE(WaitUntil([&] { return disk->IsAwaited(); }));
    disk->Release();
    harness.engine->Close();
    CHECK(harness.folder.ReadFile("activity").find(" Download Completed ") != std::string::npos);
    const std::string log = harness.folder.ReadFile("log");
    CHECK(LinesOf(log) == Strings{"Start of logging", "TX " + std::string(997, 'x'), std::string(1000, 'x'),
                                  std::string(1000, 'x'), "xxx", "RX noise", "Application Terminated"});
    // The time is that of the event.
    CHECK(std::regex_search(log, std::regex("\n00:00:10\\.\\d+ \\(\\+0\\.000000\\) RX noise\r\n")));
}

TEST_CASE("Logs: a disk that hangs keeps the program for two seconds at most, and what is lost is told") {
    const auto disk = std::make_shared<HeldDisk>();
    EngineHarness<RawProtocol> harness(quickProfile, std::make_unique<HeldLogFiles>(disk));
    harness.Open();
    SwitchActivityLogOn(harness, "activity");
    harness.engine->StartCommsLog(harness.folder / "log");
    harness.engine->SendFile(harness.folder / "NC/missing");
    harness.Exchange("noise");
    harness.Run(1s);
    const auto begun = std::chrono::steady_clock::now();
    harness.engine->Close();
    CHECK(std::chrono::steady_clock::now() - begun < 10s);
    REQUIRE(harness.events.boxes.size() == 2);
    CHECK(harness.events.boxes[0].ends_with((harness.folder / "log").string() +
                                            ": the disk does not answer. Lines lost: 2 at most"));
    CHECK(harness.events.boxes[1].ends_with((harness.folder / "activity").string() +
                                            ": the disk does not answer. Lines lost: 1 at most"));
    // The disk comes back while the program still runs.
    disk->Release();
    CHECK(WaitUntil([&] {
        return std::filesystem::exists(harness.folder / "log") &&
               harness.folder.ReadFile("log").ends_with("Application Terminated\r\n");
    }));
}

TEST_CASE("Logs: a log that cannot be opened is off within a display tick, and late news of it spare the next log") {
    const auto disk = std::make_shared<HeldDisk>();
    EngineHarness<RawProtocol> harness(quickProfile, std::make_unique<HeldLogFiles>(disk));
    harness.Open();
    const auto isTold = [&] {
        harness.Run(100ms);
        return !harness.events.boxes.empty();
    };
    harness.engine->StartCommsLog(harness.folder / "missing/log");
    CHECK(harness.Snapshot().isCommsLogOn);
    disk->ReleaseOne();
    REQUIRE(WaitUntil(isTold));
    harness.Run(100ms);
    CHECK_FALSE(harness.Snapshot().isCommsLogOn);
    harness.events.boxes.clear();
    harness.engine->StartCommsLog(harness.folder / "missing/log");
    REQUIRE(WaitUntil([&] { return disk->IsAwaited(); }));
    harness.engine->StartCommsLog(harness.folder / "log");
    harness.Settle();
    disk->ReleaseOne();
    REQUIRE(WaitUntil(isTold));
    CHECK(harness.Snapshot().isCommsLogOn);
    harness.Exchange("noise");
    disk->Release();
    harness.engine->Close();
    CHECK(LinesOf(harness.folder.ReadFile("log")) == Strings{"Start of logging", "RX noise", "Application Terminated"});
}
