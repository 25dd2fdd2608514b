#include "end-to-end/ServiceFixture.h"
#include "harness/Transcript.h"

#include <csignal>
#include <regex>

#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

// Cases that the Windows programs run as well. The others test what only this system has.
const auto onAnySystem = doctest::test_suite("service on any system");

std::string Ask(ServiceFixture& fixture, std::string_view question, std::size_t answerLength) {
    fixture.terminal->Write(Message(question));
    return fixture.terminal->Read(answerLength);
}

// For a service whose output cannot be read: tests the link until the service has answered everything.
void Connect(ServiceFixture& fixture) {
    std::string answer;
    for (int attempt = 0; attempt < 100 && answer.empty(); ++attempt) {
        fixture.terminal->Write(Message("ABTS"));
        answer = fixture.terminal->Read(6, 200ms);
    }
    REQUIRE(answer == Message("AATS"));
    while (!fixture.terminal->Read(6, 200ms).empty()) {
    }
}

int LineCount(const std::string& text, const std::string& line) {
    int count = 0;
    for (auto found = text.find(line); found != std::string::npos; found = text.find(line, found + 1))
        ++count;
    return count;
}

}

TEST_CASE("Service: its command line is the machine's name, and it ends at once without an installation" *
          onAnySystem) {
    const TemporaryFolder folder;
    ChildProcess lost("tarvindl-service", {{"LASER"}, {{"TARVINDL_HOME", NameForProgram(folder / "nowhere")}}});
    CHECK(lost.WaitForExit() == 0);
    CHECK(lost.Output().starts_with("tarvindl-service: No installation of TarvinDL was found"));
    folder.WriteFile("KEL.INI", "[PORTS]\n");
    ChildProcess corrupt("tarvindl-service", {{}, {{"TARVINDL_HOME", NameForProgram(folder.Path())}}});
    CHECK(corrupt.WaitForExit() == 1);
    CHECK(corrupt.Output().find("has no section PROGRAM PATHS") != std::string::npos);
    ChildProcess help("tarvindl-service", {{"--help"}});
    CHECK(help.WaitForExit() == 0);
    CHECK(help.Output().starts_with("Usage: tarvindl-service"));
    ChildProcess misspelt("tarvindl-service", {{"/l=German", "--chek", "LASER"}});
    CHECK(misspelt.WaitForExit() == 2);
    CHECK(misspelt.Output().find("--chek LASER is no machine") != std::string::npos);
}

TEST_CASE("Service: each line of output begins with the local time, and the end of the program saves the settings" *
          onAnySystem) {
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
        CHECK(fixture.installation.ReadFile("NC/1..part") == "half\r\n");
        // The text profile has become a record, which begins with the type number of its object.
        CHECK(fixture.installation.ReadFile("CUT_2.INI").starts_with("\x41\x45\xF7\x05"));
        fixture.Start();
        CHECK(fixture.service->WaitForOutput("CUT/2 COM1:19200,N,8,1,Xon/Xoff"));
    }
}

TEST_CASE("Service: a second one for the machine says who serves it and ends with 3, until the first is killed" *
          onAnySystem) {
    ServiceFixture fixture;
    fixture.Start();
    REQUIRE(fixture.service->WaitForOutput("LASER COM1:"));
    const ChildProcess::Options options = {{"LASER"}, {{"TARVINDL_HOME", NameForProgram(fixture.installation.Path())}}};
    {
        ChildProcess second("tarvindl-service", options);
        CHECK(second.WaitForExit() == 3);
        CHECK(second.Output().starts_with("tarvindl-service: LASER is served by a service already: process "));
    }
    CHECK(Ask(fixture, "ABTS", 6) == Message("AATS"));
    fixture.service->Signal(SIGKILL);
    (void)fixture.service->WaitForExit();
    fixture.Start();
    CHECK(fixture.service->WaitForOutput("LASER COM1:"));
}

TEST_CASE("Service: it uses the dictionary of the installation and writes its logs there" * onAnySystem) {
    ServiceFixture fixture("LASER", "comms log=%s line.log\n");
    std::filesystem::copy_file(std::filesystem::path(TARVIN_PROGRAM_FOLDER) / "../share/diction.ary",
                               fixture.installation / "diction.ary");
    fixture.Disconnect();
    fixture.Start({}, {"/l=German"});
    // The service answers a message box itself and prints the button that it chose.
    REQUIRE(fixture.service->WaitForOutput("Open Comm: COM1 - "));
    REQUIRE(fixture.service->WaitForOutput(" (OK)"));
    fixture.Connect();
    REQUIRE(fixture.service->WaitForOutput("LASER COM1:2400"));
    CHECK(Ask(fixture, "ABTS", 6) == Message("AATS"));
    CHECK(fixture.Stop() == 0);
    const std::string log = fixture.installation.ReadFile("LASER line.log");
    for (const char* line : {") Start of logging\r\n", ") LASER COM1:2400,N,8,1,None\r\n", ") TX AATSV[0d]\r\n",
                             ") Application Terminated\r\n"})
        CHECK_MESSAGE(log.find(line) != std::string::npos, log);

    fixture.installation.WriteFile("diction.ary", "no dictionary");
    fixture.Start();
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    CHECK(fixture.Stop() == 0);
    CHECK(fixture.installation.ReadFile("LASER/Debug.Log").find("MSG:WARN: \"Error Opening Specified Dictionary") !=
          std::string::npos);
    CHECK(fixture.service->Output().find("Problem: Error Opening Specified Dictionary") != std::string::npos);
    // The second run appends to the log of the first.
    const std::string longer = fixture.installation.ReadFile("LASER line.log");
    CHECK(longer.starts_with(log));
    CHECK(LineCount(longer, ") Start of logging\r\n") == 2);
}

TEST_CASE("Service: a full disk for the comms log is told once, and the transfer goes on") {
    ServiceFixture fixture("LASER", "comms log=all.log\n");
    fixture.Start([] {
        const rlimit limit = {3000, 3000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    });
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    CHECK(Ask(fixture, "ABST1", 6) == Message("AAAK"));
    for (int line = 0; line < 100; ++line)
        REQUIRE(Ask(fixture, "ABADN" + std::to_string(line), 6) == Message("AAAK"));
    CHECK(Ask(fixture, "ABEF", 6) == Message("AAAK"));
    CHECK(fixture.Stop() == 0);
    CHECK(LineCount(fixture.service->Output(), "Unable to write to log file") == 1);
    // The line that did not fit was taken out again.
    const std::string log = fixture.installation.ReadFile("all LASER.log");
    CHECK(log.size() > 2800);
    CHECK(log.ends_with("\r\n"));
}

TEST_CASE("Service: a damaged settings file is kept, and the defaults apply" * onAnySystem) {
    for (const std::string& content :
         {std::string("\x41\x45\xF7\x05\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 16),
          std::string("\x01\x02\x03\x04 foreign"), std::string("\x41\x45\xF7", 3)}) {
        ServiceFixture fixture;
        fixture.WriteSettings(content);
        fixture.Start();
        REQUIRE(fixture.service->WaitForOutput("LASER COM1:2400,N,8,1,Xon/Xoff"));
        const bool isRecord = content.starts_with("\x41\x45\xF7\x05");
        CHECK((isRecord || fixture.service->WaitForOutput("LASER.INI holds no settings of this program")));
        CHECK(Ask(fixture, "ABTS", 6) == Message("AATS"));
        CHECK(fixture.Stop() == 0);
        CHECK(fixture.installation.ReadFile("LASER.INI.bad") == content);
    }
}

TEST_CASE("Service: the folder of a machine is made only when its debug log has an entry" * onAnySystem) {
    ServiceFixture fixture("CUT/2");
    fixture.Start();
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    CHECK_FALSE(std::filesystem::exists(fixture.installation / "CUT_2"));
    CHECK(fixture.Stop() == 0);
    std::filesystem::create_directory(fixture.installation / "CUT_2");
    fixture.installation.WriteFile("CUT_2/Suppressed.txt", "12\nno number\n");
    fixture.Start();
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    CHECK(fixture.installation.ReadFile("CUT_2/Debug.Log").starts_with("\r\n----------------\r\nMSG:WARN: \""));
}

TEST_CASE("Service: a port that is missing or vanishes is opened again when it returns" * onAnySystem) {
    ServiceFixture fixture;
    fixture.Disconnect();
    fixture.Start();
    REQUIRE(fixture.service->WaitForOutput("LASER - No Link"));
    REQUIRE(fixture.service->WaitForOutput("Open Comm: COM1 - "));
    for (int round = 0; round < 2; ++round) {
        fixture.Connect();
        REQUIRE(fixture.service->WaitForOutput("LASER COM1:2400,N,8,1,None"));
        const std::string answer = Ask(fixture, "ABTS", 6);
        CHECK_MESSAGE(answer == Message("AATS"), "round ", round, ": ", fixture.service->Output());
        fixture.Disconnect();
        REQUIRE(fixture.service->WaitForOutput("LASER - No Link"));
    }
    CHECK(fixture.Stop() == 0);
    CHECK(LineCount(fixture.service->Output(), "Open Comm") == 1);
    // An outage that is over at once is told by its link alone.
    CHECK(LineCount(fixture.service->Output(), "COM1 - ") == 1);
    CHECK(LineCount(fixture.service->Output(), "LASER - No Link") == 3);
}

TEST_CASE("Service: a file that cannot grow ends the upload and keeps the acknowledged lines") {
    ServiceFixture fixture;
    fixture.Start([] {
        const rlimit limit = {20, 20};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    });
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    CHECK(Ask(fixture, "ABST1", 6) == Message("AAAK"));
    CHECK(Ask(fixture, "ABAD0123456789", 6) == Message("AAAK"));
    CHECK(Ask(fixture, "ABAD0123456789", 8) == Message("AAAK03"));
    CHECK(fixture.service->WaitForOutput("Upload Error(s) " + fixture.NcFolder() + "/1.nc: File too large"));
    CHECK(Ask(fixture, "ABTS", 6) == Message("AATS"));
    CHECK(fixture.installation.ReadFile("NC/1.nc.part") == "0123456789\r\n");
}

TEST_CASE("Service: it ends without waiting for a held line") {
    ServiceFixture fixture;
    fixture.WriteSettings("[Port Settings]\ntransmit delay=0\nflow control=Xon/Xoff\n[Files]\nfile extension=nc\n");
    fixture.Start();
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    fixture.installation.WriteFile("NC/1.nc", "N1\n");
    fixture.terminal->Write("\x13" + Message("ABSE1"));
    REQUIRE(fixture.service->WaitForOutput("Downloading"));
    const auto asked = std::chrono::steady_clock::now();
    CHECK(fixture.Stop() == 0);
    // Well below the 10 s that a write may take, and below the time that closing a device may wait for its last bytes.
    CHECK(std::chrono::steady_clock::now() - asked < 5s);
}

TEST_CASE("Service: without standard streams, still only answers go out on the line") {
    ServiceFixture fixture;
    fixture.Start([] {
        for (const int stream : {0, 1, 2})
            ::close(stream);
    });
    Connect(fixture);
    CHECK(Ask(fixture, "ABST1", 6) == Message("AAAK"));
    CHECK(Ask(fixture, "ABEF", 6) == Message("AAAK"));
    CHECK(fixture.terminal->Read(1, 300ms).empty());
    CHECK(fixture.Stop() == 0);
}

TEST_CASE("Service: a full output pipe delays neither the line nor the end of the program") {
    ServiceFixture fixture;
    int ends[2] = {-1, -1};
    REQUIRE(::pipe(ends) == 0);
    const int smallest = ::fcntl(ends[1], F_SETPIPE_SZ, 4096);
    REQUIRE(smallest >= 4096);
    fixture.Start([&] { ::dup2(ends[1], STDOUT_FILENO); });
    Connect(fixture);
    for (int upload = 0; upload < smallest / 50; ++upload) {
        REQUIRE(Ask(fixture, "ABST1", 6) == Message("AAAK"));
        REQUIRE(Ask(fixture, "ABEF", 6) == Message("AAAK"));
    }
    CHECK(fixture.Stop() == 0);
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST_CASE("Service: refused port settings leave the line raw, and a second program does not get the port") {
    ServiceFixture fixture;
    fixture.WriteSettings("[Port Settings]\nstopbits=1.5\n");
    fixture.Disconnect();
    fixture.Connect(PseudoTerminal::Mode::Cooked);
    fixture.Start();
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    REQUIRE(fixture.service->WaitForOutput("Update Comm State: COM1 - Unsupported line settings"));
    // The line still became raw: no echo, no line editing.
    CHECK(Ask(fixture, "ABTS", 6) == Message("AATS"));
    fixture.terminal->Write("\x04");
    CHECK(Ask(fixture, "ABTS", 6) == Message("AATS"));
    ChildProcess second("tarvindl-service", {{"OTHER"}, {{"TARVINDL_HOME", fixture.installation.Path().string()}}});
    CHECK(second.WaitForOutput("OTHER - No Link"));
    CHECK(second.WaitForOutput("Open Comm: COM1 - Device or resource busy"));
    CHECK(Ask(fixture, "ABTS", 6) == Message("AATS"));
}

TEST_CASE("Service: a signal that was ignored at the start stays ignored") {
    ServiceFixture fixture;
    fixture.Start([] { std::signal(SIGHUP, SIG_IGN); });
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    fixture.service->Signal(SIGHUP);
    CHECK(Ask(fixture, "ABTS", 6) == Message("AATS"));
    CHECK(fixture.Stop() == 0);
}
