// tarvindl-status beside a real service.
#include "end-to-end/ServiceFixture.h"
#include "harness/Transcript.h"

#include <doctest/doctest.h>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

const auto onAnySystem = doctest::test_suite("service on any system");

ChildProcess::Options StatusOptions(ServiceFixture& fixture, std::vector<std::string> words) {
    return {std::move(words), {{"TARVINDL_HOME", NameForProgram(fixture.installation.Path())}}};
}

struct StatusResult {
    int exitCode = 0;
    std::string output;
};

StatusResult Status(ServiceFixture& fixture, std::vector<std::string> words = {"LASER"}) {
    ChildProcess status("tarvindl-status", StatusOptions(fixture, std::move(words)));
    const int exitCode = status.WaitForExit();
    return {exitCode, status.Output()};
}

bool StatusBecomes(ServiceFixture& fixture, const std::string& start, int exitCode) {
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    StatusResult result;
    do {
        result = Status(fixture);
        if (result.output.starts_with(start) && result.exitCode == exitCode)
            return true;
    } while (std::chrono::steady_clock::now() < deadline);
    MESSAGE(result.output);
    return false;
}

}

TEST_CASE("tarvindl-status: a service that runs, transfers, is killed and ends in order" * onAnySystem) {
    ServiceFixture fixture;
    CHECK(StatusBecomes(fixture, "LASER: not running\n", 2));
    fixture.Start();
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    CHECK(StatusBecomes(fixture, "LASER: ready, errors 0, repeats 0, since ", 0));
    fixture.terminal->Write(Message("ABST4711"));
    CHECK(fixture.terminal->Read(6) == Message("AAAK"));
    fixture.terminal->Write(Message("ABADG1 X5"));
    CHECK(fixture.terminal->Read(6) == Message("AAAK"));
    CHECK(StatusBecomes(fixture, "LASER: receiving 4711, 7 bytes, ", 0));
    CHECK(Status(fixture, {"--json"}).output.find("\"published\":{\"format\":\"TarvinDL status\"") !=
          std::string::npos);
    fixture.service->Signal(SIGKILL);
    (void)fixture.service->WaitForExit();
    CHECK(StatusBecomes(fixture, "LASER: died, ", 2));
    fixture.Start();
    REQUIRE(fixture.service->WaitForOutput("Waiting..."));
    CHECK(StatusBecomes(fixture, "LASER: ready, ", 0));
    CHECK(fixture.Stop() == 0);
    CHECK(StatusBecomes(fixture, "LASER: not running\n", 2));
}

TEST_CASE("tarvindl-status: --watch repeats the lines in a pipe") {
    ServiceFixture fixture;
    ChildProcess watch("tarvindl-status", StatusOptions(fixture, {"--watch"}));
    CHECK(watch.WaitForOutput(" LASER: not running\n"));
    CHECK(watch.WaitForOutput(" LASER: not running\n"));
}

TEST_CASE("tarvindl-status: --watch draws in 80 columns and gives the terminal back, by q and by Ctrl+C") {
    for (const char* const key : {"q", "\x03"}) {
        ServiceFixture fixture;
        PseudoTerminal screen(PseudoTerminal::Mode::Cooked);
        screen.HoldDevice();
        const std::string device = screen.Device().string();
        auto options = StatusOptions(fixture, {"--watch"});
        options.environment["TERM"] = "xterm";
        options.beforeStart = [&device] {
            ::setsid();
            const int terminal = ::open(device.c_str(), O_RDWR);
            ::dup2(terminal, STDIN_FILENO);
            ::dup2(terminal, STDOUT_FILENO);
        };
        termios before = {};
        REQUIRE(::tcgetattr(screen.Descriptor(), &before) == 0);
        ChildProcess watch("tarvindl-status", options);
        std::string drawn;
        const auto deadline = std::chrono::steady_clock::now() + 20s;
        // Two frames.
        while (drawn.find("\x1b[J", drawn.find("q: quit") + 20) == std::string::npos &&
               std::chrono::steady_clock::now() < deadline)
            drawn += screen.Read(1, 100ms);
        REQUIRE(drawn.starts_with("\x1b[?1049h\x1b[?25l"));
        const std::string row = drawn.substr(drawn.find("LASER"), drawn.find("\x1b[0m") - drawn.find("LASER"));
        CHECK(row.starts_with("LASER    not running"));
        CHECK(row.size() <= 80);
        screen.Write(key);
        CHECK(watch.WaitForExit() == 2);
        drawn += screen.Read(1000, 200ms);
        CHECK(drawn.ends_with("\x1b[?25h\x1b[?1049l"));
        termios after = {};
        REQUIRE(::tcgetattr(screen.Descriptor(), &after) == 0);
        CHECK(after.c_lflag == before.c_lflag);
    }
}
