#include "end-to-end/ServiceFixture.h"
#include "harness/WaitUntil.h"

#include <csignal>
#include <filesystem>

#include <doctest/doctest.h>

using namespace tarvin::test;

namespace {

// The service on the line that the simulated controller makes, both as they are.
class TwoPrograms {
public:
    TwoPrograms() {
        fixture.Disconnect();
        fixture.folder.WriteFile("part", Part());
        fixture.folder.WriteFile("NC/200.nc", Part());
    }

    static std::string Part() {
        std::string part;
        for (int line = 0; line < 300; ++line)
            part += "N" + std::to_string(line * 10) + " G01 X" + std::to_string(line * 37 % 500) + ".125 (%s ~)\r\n";
        return part;
    }

    std::string File(const std::string& name) const { return (fixture.folder / name).string(); }

    // Until the controller has made its end.
    void WaitForLine() const {
        REQUIRE(WaitUntil([this] { return std::filesystem::exists(fixture.folder / "line"); }));
    }

    // The controller's exit code; FILE stands for the file that is sent.
    int Run(std::vector<std::string> arguments) {
        for (std::string& argument : arguments)
            argument = argument == "FILE" ? File("part") : argument == "RECEIVED" ? File("received") : argument;
        arguments.insert(arguments.begin(), {"--pty", File("line")});
        ChildProcess controller("tarvin-controller", {arguments});
        WaitForLine();
        fixture.LetPortBeThere(true);
        if (!fixture.service) {
            fixture.Start();
            CHECK(fixture.service->WaitForOutput("Waiting..."));
        }
        const int result = controller.WaitForExit();
        fixture.LetPortBeThere(false);
        output = controller.Output();
        return result;
    }

    ServiceFixture fixture;
    std::string output;
};

}

TEST_SUITE_BEGIN("service on any system");

TEST_CASE("files come through whole, however the controller misbehaves on a line that is not lossy") {
    struct Case {
        std::vector<std::string> misbehaviour;
        bool isRepeating;
    };
    const Case cases[] = {
        {{}, false},
        {{"--split", "--noise", "30", "--seed", "1"}, false},
        {{"--nak-every", "7"}, true},
        {{"--garble-received", "5", "--seed", "3"}, true},
    };
    TwoPrograms programs;
    for (const Case& each : cases) {
        std::vector<std::string> arguments = each.misbehaviour;
        arguments.insert(arguments.end(), {"test", "put", "100", "FILE", "get", "200", "RECEIVED", "check", "200",
                                           "FILE", "refuse-get", "1"});
        CHECK(programs.Run(arguments) == 0);
        CAPTURE(programs.output);
        CHECK(programs.fixture.folder.ReadFile("NC/100.nc") == TwoPrograms::Part());
        CHECK(programs.fixture.folder.ReadFile("received") == TwoPrograms::Part());
        CHECK((programs.output.find(" 0 repeats, ok\ncheck") == std::string::npos) == each.isRepeating);
        // A line of its own each time, at which the program finds the controller again.
        CHECK(programs.fixture.service->WaitForOutput("LASER - No Link"));
    }
    programs.fixture.service->Signal(SIGTERM);
    CHECK(programs.fixture.service->WaitForExit() == 0);
}

TEST_CASE("a fault is noticed: wrong content, lost messages, a controller that falls silent") {
    TwoPrograms programs;
    std::string changed = TwoPrograms::Part();
    changed[changed.size() / 2] ^= 1;
    programs.fixture.folder.WriteFile("NC/201.nc", changed);
    CHECK(programs.Run({"check", "201", "FILE"}) == 1);
    CHECK(programs.Run({"get", "404"}) == 1);
    CHECK(programs.Run({"--drop", "20", "--timeout", "0.3", "--seed", "5", "put", "100", "FILE"}) == 1);
    // After a link test the next exchange starts over, whatever became of the last.
    CHECK(programs.Run(
              {"--stop-after", "50", "put", "100", "FILE", "test", "put", "100", "FILE", "check", "100", "FILE"}) == 3);
    CHECK(programs.Run({"test", "put", "100", "FILE", "check", "100", "FILE"}) == 0);
    CHECK(programs.fixture.folder.ReadFile("NC/100.nc") == TwoPrograms::Part());
}

TEST_SUITE_END();

TEST_CASE("a controller that stays keeps the line, whatever comes, until the program has gone") {
    TwoPrograms programs;
    ChildProcess controller("tarvin-controller", {{"--pty", programs.File("line"), "test", "stay"}});
    programs.WaitForLine();
    programs.fixture.Start();
    REQUIRE(controller.WaitForOutput("stay: until the program closes the line"));
    programs.fixture.service->Signal(SIGTERM);
    CHECK(programs.fixture.service->WaitForExit() == 0);
    CHECK(controller.WaitForExit() == 0);
    CHECK(controller.Output().ends_with("stay: ok\n"));
    CHECK(programs.fixture.service->Output().find("No Link") == std::string::npos);
}
