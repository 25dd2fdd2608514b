// tarvindl-setup beside a service that runs.
#include "end-to-end/ServiceFixture.h"
#include "harness/Transcript.h"

#include <csignal>

#include <doctest/doctest.h>
#include <unistd.h>

using namespace tarvin::test;

namespace {

// Cases that the Windows programs run as well.
const auto onAnySystem = doctest::test_suite("service on any system");

struct SetupRun {
    int exitCode = 0;
    std::string output;

    bool Says(const std::string& text) const { return output.find(text) != std::string::npos; }
};

SetupRun RunSetup(const ServiceFixture& fixture, std::vector<std::string> words) {
    words.insert(words.begin(), {fixture.machine, "--installation", NameForProgram(fixture.installation.Path())});
    ChildProcess setup("tarvindl-setup", {words});
    const int exitCode = setup.WaitForExit();
    return {exitCode, setup.Output()};
}

SetupRun RunCheck(const ServiceFixture& fixture) {
    ChildProcess check("tarvindl-service", {{"--check", fixture.machine},
                                            {{"TARVINDL_HOME", NameForProgram(fixture.installation.Path())}}});
    const int exitCode = check.WaitForExit();
    return {exitCode, check.Output()};
}

}

TEST_CASE("Setup: settings that are set while a service runs count after a reload, and stay when it ends" *
          onAnySystem) {
    ServiceFixture fixture;
    fixture.Start();
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    const auto set = RunSetup(fixture, {"--set", "baudrate=19200", "--set", "silence=7"});
    CAPTURE(set.output);
    CHECK(set.exitCode == 0);
    CHECK(set.Says("They count after: tarvindl-setup LASER --reload"));
    const auto reloaded = RunSetup(fixture, {"--reload"});
    CAPTURE(reloaded.output);
    CHECK(reloaded.exitCode == 0);
    CHECK(reloaded.Says("has read the settings again"));
    CHECK(fixture.service->WaitForOutput("LASER COM1:19200,"));
    const auto away = RunSetup(fixture, {"--set", "port=COM77"});
    CAPTURE(away.output);
    CHECK(away.exitCode == 0);
    CHECK(away.Says("tarvindl-setup: "));
    CHECK(away.Says("COM77"));
    CHECK(RunSetup(fixture, {"--set", "port=COM1"}).exitCode == 0);
    // Changed without a reload: the end of the service must not write the old value over it.
    CHECK(RunSetup(fixture, {"--set", "attention=77"}).exitCode == 0);
    CHECK(fixture.Stop() == 0);
    const auto shown = RunSetup(fixture, {"--show"});
    CHECK(shown.Says("\nattention=77\n"));
    CHECK(shown.Says("\nsilence=7\n"));
    CHECK(shown.Says("\nbaudrate=19200\n"));
    CHECK(RunSetup(fixture, {"--reload"}).Says("No program serves LASER now"));
}

TEST_CASE("Setup: a reload during an upload waits for its end") {
    ServiceFixture fixture;
    fixture.Start();
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    const auto ask = [&](std::string_view question) {
        fixture.terminal->Write(Message(question));
        return fixture.terminal->Read(6);
    };
    REQUIRE(ask("ABST5") == Message("AAAK"));
    REQUIRE(ask("ABADG0 X1") == Message("AAAK"));
    const auto later = RunSetup(fixture, {"--set", "baudrate=19200", "--reload"});
    CAPTURE(later.output);
    CHECK(later.exitCode == 0);
    CHECK(later.Says("when its transfer has ended"));
    CHECK(fixture.service->WaitForOutput("The changed settings count as soon as the transfer has ended"));
    CHECK(ask("ABADG0 X2") == Message("AAAK"));
    CHECK(ask("ABEF") == Message("AAAK"));
    CHECK(fixture.service->WaitForOutput("LASER COM1:19200,"));
    CHECK(fixture.installation.ReadFile("NC/5.nc") == "G0 X1\r\nG0 X2\r\n");
    CHECK(fixture.Stop() == 0);
}

TEST_CASE("Service: SIGHUP makes it read its settings again, and it serves on") {
    ServiceFixture fixture;
    // In no terminal, as a service manager starts it.
    fixture.Start([] { (void)::setsid(); });
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    fixture.WriteSettings("[Port Settings]\nbaudrate=4800\nflow control=None\n");
    fixture.service->Signal(SIGHUP);
    CHECK(fixture.service->WaitForOutput("The settings were read again"));
    fixture.terminal->Write(Message("ABTS"));
    CHECK(fixture.terminal->Read(6) == Message("AATS"));
    CHECK(fixture.service->Output().find("LASER COM1:4800,") != std::string::npos);
    CHECK(fixture.Stop() == 0);
}

TEST_CASE("Service: a folder that it may not use is told at the start, and the check says what mends it" *
          onAnySystem) {
    ServiceFixture fixture;
    const auto well = RunCheck(fixture);
    CAPTURE(well.output);
    CHECK(well.exitCode == 0);
    CHECK(well.Says("A start would serve LASER at COM1"));
    const std::string missing = NameForProgram(fixture.installation / "missing");
    fixture.WriteSettings("[Files]\ndownload path=" + missing + "\n");
    const auto wrong = RunCheck(fixture);
    CAPTURE(wrong.output);
    CHECK(wrong.exitCode == 1);
    CHECK(wrong.Says("Wrong: The folder " + missing));
    fixture.Start();
    CHECK(fixture.service->WaitForOutput("The folder " + missing));
    // New settings are tried as well.
    fixture.WriteSettings("[Files]\nupload path=" + missing + "2\n");
    CHECK(RunSetup(fixture, {"--reload"}).exitCode == 0);
    CHECK(fixture.service->WaitForOutput("The folder " + missing + "2"));
    CHECK(fixture.Stop() == 0);
}
