// Two starts of the program for one machine, each a process of its own.
#include "harness/ChildProcessPosix.h"
#include "harness/TemporaryInstallation.h"
#include "harness/WaitUntil.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <doctest/doctest.h>

namespace tarvin::test {

using namespace std::chrono_literals;

namespace {

bool Succeeds(const std::string& command) {
    return std::system(("( " + command + " ) >/dev/null 2>&1").c_str()) == 0;
}

std::string Visible(const std::string& title) {
    return "xdotool search --onlyvisible --name '^" + title + "$'";
}

// Corner and size of the window, as the display server knows them.
std::string PlaceOf(const std::string& machine) {
    const std::string command = Visible(machine + ".*") + " getwindowgeometry --shell | grep -E 'X=|Y=|WIDTH|HEIGHT'";
    std::FILE* const pipe = ::popen(command.c_str(), "r");
    REQUIRE(pipe != nullptr);
    std::string place;
    for (int character = std::fgetc(pipe); character != EOF; character = std::fgetc(pipe))
        place += static_cast<char>(character == '\n' ? ' ' : character);
    ::pclose(pipe);
    return place;
}

const std::string activeTitle = "xdotool getactivewindow getwindowname | grep -q ";

ChildProcess::Options Start(const TemporaryInstallation& installation, const std::string& machine) {
    return {{machine}, {{"TARVINDL_HOME", installation.Path().string()}}};
}

}

TEST_CASE("tarvindl: a second start raises the machine's window, and kill frees the machine at once") {
    const TemporaryInstallation installation;
    ChildProcess first("tarvindl", Start(installation, "LASER"));
    REQUIRE(WaitUntil([] { return Succeeds(Visible("LASER.*")); }));
    ChildProcess other("tarvindl", Start(installation, "PUNCH"));
    REQUIRE(WaitUntil([] { return Succeeds(Visible("PUNCH.*")); }));
    for (const bool isMinimised : {false, true}) {
        CAPTURE(isMinimised);
        REQUIRE(Succeeds(Visible("PUNCH.*") + " windowactivate --sync"));
        if (isMinimised) {
            REQUIRE(Succeeds(Visible("LASER.*") + " windowminimize"));
            REQUIRE(WaitUntil([] { return !Succeeds(Visible("LASER.*")); }));
        }
        ChildProcess second("tarvindl", Start(installation, "LASER"));
        CHECK(second.WaitForExit() == 0);
        CHECK(WaitUntil([] { return Succeeds(activeTitle + "LASER"); }));
    }
    first.Signal(SIGKILL);
    CHECK(first.WaitForExit() == -SIGKILL);
    ChildProcess next("tarvindl", Start(installation, "LASER"));
    CHECK(WaitUntil([] { return Succeeds(Visible("LASER.*")); }));
    // This one waits until the machine is free, and then serves it.
    next.Signal(SIGTERM);
    ChildProcess last("tarvindl", Start(installation, "LASER"));
    CHECK(next.WaitForExit() == 0);
    CHECK(WaitUntil([] { return Succeeds(Visible("LASER.*")); }));
    last.Signal(SIGTERM);
    CHECK(last.WaitForExit() == 0);
    other.Signal(SIGTERM);
    CHECK(other.WaitForExit() == 0);
}

TEST_CASE("tarvindl: a window that hangs, and a service, are named in a box") {
    const TemporaryInstallation installation;
    const auto isTold = [&installation](const std::string& text) {
        ChildProcess second("tarvindl", Start(installation, "LASER"));
        const std::string box = Visible("LASER Is Served Already");
        REQUIRE(WaitUntil([&box] { return Succeeds(box); }));
        CHECK(second.Output().find(text) != std::string::npos);
        CHECK(Succeeds(box + " windowfocus --sync key Return"));
        CHECK(second.WaitForExit() == 3);
    };
    {
        ChildProcess hanging("tarvindl", Start(installation, "LASER"));
        REQUIRE(WaitUntil([] { return Succeeds(Visible("LASER - No Link")); }));
        hanging.Signal(SIGSTOP);
        isTold("does not answer: process " + std::to_string(hanging.Id()));
    }
    // It has no folder where it could publish what a window would show.
    auto options = Start(installation, "LASER");
    options.environment["TARVINDL_RUNTIME"] = (installation / "no/folder").string();
    ChildProcess service("tarvindl-service", options);
    REQUIRE(service.WaitForOutput("No Link"));
    isTold("served by a service already: process " + std::to_string(service.Id()));
}

TEST_CASE("tarvindl: windows of a machine that a service serves open beside each other, and the service goes on") {
    const TemporaryInstallation installation;
    ChildProcess service("tarvindl-service", Start(installation, "LASER"));
    REQUIRE(service.WaitForOutput("No Link"));
    ChildProcess first("tarvindl", Start(installation, "LASER"));
    ChildProcess second("tarvindl", Start(installation, "LASER"));
    CHECK(WaitUntil([] { return Succeeds("test $(" + Visible("LASER - No Link") + " | wc -l) = 2"); }));
    for (ChildProcess* const window : {&first, &second}) {
        window->Signal(SIGTERM);
        CHECK(window->WaitForExit() == 0);
    }
    service.Signal(SIGTERM);
    CHECK(service.WaitForExit() == 0);
}

TEST_CASE("WindowPlacement: new windows stand apart, and a new process shows each exactly where it was") {
    const TemporaryInstallation installation;
    const std::vector<std::string> machines = {"LASER", "PUNCH", "PRESS"};
    const auto start = [&](const std::string& machine) {
        auto options = Start(installation, machine);
        options.environment["XDG_CONFIG_HOME"] = (installation / "config").string();
        return std::make_unique<ChildProcess>("tarvindl", options);
    };
    const auto end = [](ChildProcess& program) {
        program.Signal(SIGTERM);
        CHECK(program.WaitForExit() == 0);
    };
    std::map<std::string, std::string> places;
    for (int round = 0; round < 3; ++round) {
        CAPTURE(round);
        std::vector<std::unique_ptr<ChildProcess>> programs;
        for (const std::string& machine : machines) {
            CAPTURE(machine);
            programs.push_back(start(machine));
            REQUIRE(WaitUntil([&] { return Succeeds(activeTitle + machine); }));
            // The window manager may move a window after it is active. The first round gives each machine its place:
            // where it stays. The other rounds find it there.
            const auto isInPlace = [&] {
                const std::string now = PlaceOf(machine);
                const bool isSame = now == places[machine];
                if (round == 0)
                    places[machine] = now;
                return isSame;
            };
            CHECK(WaitUntil(isInPlace));
        }
        for (const auto& program : programs)
            end(*program);
    }
    std::set<std::string> corners;
    for (const auto& [machine, place] : places)
        corners.insert(place);
    CHECK(corners.size() == machines.size());
}

}
