#include "end-to-end/ServiceFixture.h"
#include "support/Transcript.h"

#include <csignal>
#include <regex>

#include <doctest/doctest.h>
#include <sys/resource.h>

using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

std::string Ask(ServiceFixture& fixture, std::string_view question, std::size_t answerLength) {
    fixture.terminal->Write(Message(question));
    return fixture.terminal->Read(answerLength);
}

int LineCount(const std::string& text, const std::string& line) {
    int count = 0;
    for (auto found = text.find(line); found != std::string::npos; found = text.find(line, found + 1))
        ++count;
    return count;
}

}

TEST_CASE("the command line is the machine's name, and without an installation nothing happens") {
    const TemporaryFolder folder;
    ChildProcess lost("tarvindl-service", {{"LASER"}, {{"TARVINDL_HOME", (folder / "nowhere").string()}}});
    CHECK(lost.WaitForExit() == 0);
    CHECK(lost.Output().starts_with("tarvindl-service: No installation of TarvinDL was found"));
    folder.WriteFile("KEL.INI", "[PORTS]\n");
    ChildProcess corrupt("tarvindl-service", {{}, {{"TARVINDL_HOME", folder.Path().string()}}});
    CHECK(corrupt.WaitForExit() == 0);
    CHECK(corrupt.Output().find("has no section PROGRAM PATHS") != std::string::npos);
    ChildProcess help("tarvindl-service", {{"--help"}});
    CHECK(help.WaitForExit() == 0);
    CHECK(help.Output().starts_with("Usage: tarvindl-service"));
}

TEST_CASE("each line of output is headed by the local time, and the end of the program saves the settings") {
    for (const int signal : {SIGTERM, SIGINT}) {
        ServiceFixture fixture("CUT/2");
        fixture.WriteSettings("[Port Settings]\nport=COM1\nbaudrate=19200\n");
        fixture.Start();
        REQUIRE(fixture.service->WaitForOutput("CUT/2 COM1:19200,N,8,1,Xon/Xoff"));
        REQUIRE(fixture.service->WaitForOutput("Waiting..."));
        CHECK(Ask(fixture, "ABST1", 6) == Message("AAAK"));
        CHECK(Ask(fixture, "ABADhalf", 6) == Message("AAAK"));
        fixture.service->Signal(signal);
        CHECK(fixture.service->WaitForExit() == 0);
        std::istringstream lines(fixture.service->Output());
        const std::regex headed("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} .+");
        for (std::string line; std::getline(lines, line);)
            CHECK_MESSAGE(std::regex_match(line, headed), line);
        CHECK(fixture.folder.ReadFile("NC/1.") == "half\r\n");
        // A record now, with the type of the program's settings at its head.
        CHECK(fixture.folder.ReadFile("CUT_2.INI").starts_with("\x41\x45\xF7\x05"));
        fixture.Start();
        CHECK(fixture.service->WaitForOutput("CUT/2 COM1:19200,N,8,1,Xon/Xoff"));
    }
}

TEST_CASE("a settings file that is no such thing gives a warning or the defaults, and is kept") {
    for (const std::string& content :
         {std::string("\x41\x45\xF7\x05\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 16),
          std::string("\x01\x02\x03\x04 foreign"), std::string("\x41\x45\xF7", 3)}) {
        ServiceFixture fixture;
        fixture.WriteSettings(content);
        fixture.Start();
        REQUIRE(fixture.service->WaitForOutput("LASER COM1:2400,N,8,1,Xon/Xoff"));
        CHECK(Ask(fixture, "ABTS", 6) == Message("AATS"));
        fixture.service->Signal(SIGTERM);
        CHECK(fixture.service->WaitForExit() == 0);
        CHECK(fixture.folder.ReadFile("LASER.INI.bad") == content);
    }
}

TEST_CASE("a port that is not there, or vanishes, comes back by itself") {
    ServiceFixture fixture;
    fixture.Disconnect();
    fixture.Start();
    REQUIRE(fixture.service->WaitForOutput("Open Comm: COM1 - "));
    REQUIRE(fixture.service->WaitForOutput("LASER - No Link"));
    for (int round = 0; round < 2; ++round) {
        fixture.Connect();
        REQUIRE(fixture.service->WaitForOutput("LASER COM1:2400,N,8,1,None"));
        CHECK(Ask(fixture, "ABTS", 6) == Message("AATS"));
        fixture.Disconnect();
        REQUIRE(fixture.service->WaitForOutput("LASER - No Link"));
    }
    fixture.service->Signal(SIGTERM);
    CHECK(fixture.service->WaitForExit() == 0);
    CHECK(LineCount(fixture.service->Output(), "Open Comm") == 1);
    CHECK(LineCount(fixture.service->Output(), "COM1 - Input/output error (Ok)") == 2);
}

TEST_CASE("a file that may not grow ends the upload with what fitted") {
    ServiceFixture fixture;
    fixture.Start([] {
        const rlimit limit = {20, 20};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    });
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    CHECK(Ask(fixture, "ABST1", 6) == Message("AAAK"));
    CHECK(Ask(fixture, "ABAD0123456789", 6) == Message("AAAK"));
    CHECK(Ask(fixture, "ABAD0123456789", 8) == Message("AAAK03"));
    CHECK(fixture.service->WaitForOutput("Upload Error(s) " + fixture.NcFolder() + "/1.nc"));
    CHECK(Ask(fixture, "ABTS", 6) == Message("AATS"));
    CHECK(fixture.folder.ReadFile("NC/1.nc") == "0123456789\r\n01234567");
}

TEST_CASE("the program ends without waiting for a line that is held") {
    ServiceFixture fixture;
    fixture.WriteSettings("[Port Settings]\ntransmit delay=0\nflow control=Xon/Xoff\n[Files]\nfile extension=nc\n");
    fixture.Start();
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    fixture.folder.WriteFile("NC/1.nc", "N1\n");
    fixture.terminal->Write("\x13" + Message("ABSE1"));
    REQUIRE(fixture.service->WaitForOutput("Downloading"));
    const auto asked = std::chrono::steady_clock::now();
    fixture.service->Signal(SIGTERM);
    CHECK(fixture.service->WaitForExit() == 0);
    // Far from the ten seconds that a write may take, and from what a closing device may wait for its last bytes.
    CHECK(std::chrono::steady_clock::now() - asked < 8s);
}
