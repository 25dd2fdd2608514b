#include "base/Sha256.h"
#include "end-to-end/ServiceFixture.h"
#include "harness/WaitUntil.h"

#include <csignal>
#include <filesystem>

#include <doctest/doctest.h>

using namespace tarvin::test;

namespace {

// The real service and the real simulated controller, on the line that the controller makes.
class TwoPrograms {
public:
    TwoPrograms() {
        fixture.Disconnect();
        fixture.installation.WriteFile("part", Part());
        fixture.installation.WriteFile("NC/200.nc", Part());
    }

    static std::string Part() {
        std::string part;
        for (int line = 0; line < 300; ++line)
            part += "N" + std::to_string(line * 10) + " G01 X" + std::to_string(line * 37 % 500) + ".125 (%s ~)\r\n";
        return part;
    }

    std::string File(const std::string& name) const { return (fixture.installation / name).string(); }

    // Waits until the controller has made the line.
    void WaitForLine() const {
        REQUIRE(WaitUntil([this] { return std::filesystem::exists(fixture.installation / "line"); }));
    }

    // Runs the controller to its end and returns its exit code. FILE stands for the file that it sends, RECEIVED for
    // the file that it writes. The first call starts the service as well.
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

TEST_CASE("Service and controller: files arrive whole through noise, split messages, refusals and damaged answers") {
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
        CHECK(programs.fixture.installation.ReadFile("NC/100.nc") == TwoPrograms::Part());
        CHECK(programs.fixture.installation.ReadFile("received") == TwoPrograms::Part());
        CHECK((programs.output.find(" 0 repeats, ok\ncheck") == std::string::npos) == each.isRepeating);
        // The line went with the controller. The next controller makes a new one, which the service has to open.
        CHECK(programs.fixture.service->WaitForOutput("LASER - No Link"));
    }
    CHECK(programs.fixture.Stop() == 0);
}

TEST_CASE("Service and controller: each transfer and each refusal is a row of the history, with what was transferred") {
    TwoPrograms programs;
    REQUIRE(programs.Run({"put", "100", "FILE", "get", "200", "RECEIVED", "refuse-get", "1"}) == 0);
    CHECK(programs.fixture.Stop() == 0);
    ChildProcess history("tarvin-history", {{"--csv", "--machine", "LASER"},
                                            {{"TARVINDL_HOME", NameForProgram(programs.fixture.installation.Path())}}});
    CHECK(history.WaitForExit() == 0);
    const std::string rows = history.Output();
    CAPTURE(rows);
    tarvin::Sha256 sum;
    sum.Add(TwoPrograms::Part());
    const auto last = rows.find("LASER,1,");
    const auto sent = rows.find("LASER,200,", last);
    const auto stored = rows.find("LASER,100,", sent);
    REQUIRE(stored != std::string::npos);
    CHECK(rows.find("to machine,refused", last) < sent);
    CHECK(rows.find("to machine,completed", sent) < stored);
    CHECK(rows.find("," + sum.Digits() + ",", sent) < stored);
    CHECK(rows.find("from machine,completed", stored) != std::string::npos);
    CHECK(rows.find("," + sum.Digits() + ",", stored) != std::string::npos);
}

TEST_CASE("Service and controller: the controller notices wrong content, a missing file and lost messages") {
    TwoPrograms programs;
    std::string changed = TwoPrograms::Part();
    changed[changed.size() / 2] ^= 1;
    programs.fixture.installation.WriteFile("NC/201.nc", changed);
    CHECK(programs.Run({"check", "201", "FILE"}) == 1);
    CHECK(programs.Run({"get", "404"}) == 1);
    CHECK(programs.Run({"--drop", "20", "--timeout", "0.3", "--seed", "5", "put", "100", "FILE"}) == 1);
    // A link test ends the abandoned upload, so that the next one starts anew.
    CHECK(programs.Run(
              {"--stop-after", "50", "put", "100", "FILE", "test", "put", "100", "FILE", "check", "100", "FILE"}) == 3);
    CHECK(programs.Run({"test", "put", "100", "FILE", "check", "100", "FILE"}) == 0);
    CHECK(programs.fixture.installation.ReadFile("NC/100.nc") == TwoPrograms::Part());
}

TEST_SUITE_END();

TEST_CASE("Service and controller: a controller that stays keeps the line until the program has closed it") {
    TwoPrograms programs;
    ChildProcess controller("tarvin-controller", {{"--pty", programs.File("line"), "test", "stay"}});
    programs.WaitForLine();
    programs.fixture.Start();
    REQUIRE(controller.WaitForOutput("stay: until the program closes the line"));
    CHECK(programs.fixture.Stop() == 0);
    CHECK(controller.WaitForExit() == 0);
    CHECK(controller.Output().ends_with("stay: ok\n"));
    CHECK(programs.fixture.service->Output().find("No Link") == std::string::npos);
}
