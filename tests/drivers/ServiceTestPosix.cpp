// A conversation of the real service with the simulated controller over the driver's line.

#include "drivers/DriverLinePosix.h"
#include "harness/ChildProcessPosix.h"
#include "harness/PseudoTerminalPosix.h"
#include "harness/TemporaryInstallation.h"
#include "harness/Transcript.h"

#include <atomic>
#include <csignal>
#include <memory>
#include <thread>

#include <doctest/doctest.h>

using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

constexpr const char* service = "/bin/tarvindl-service";
constexpr const char* controller = "/bin/tarvin-controller";

std::string Settings(const std::string& flow, const std::string& baudRate = "57600") {
    return "[Port Settings]\nbaudrate=" + baudRate + "\ntransmit delay=0\nflow control=" + flow +
           "\n[Files]\nfile extension=nc\n";
}

// The simulated controller wants a serial device. Bytes pass between its pseudo-terminal and the far end of the line.
class Bridge {
public:
    Bridge() {
        terminal.HoldDevice();
        carrier = std::thread([this] {
            while (!isOver) {
                if (const std::string bytes = terminal.Read(1, 1ms); !bytes.empty())
                    Driver().Send(bytes);
                if (const std::string bytes = Driver().Receive(1, 1ms); !bytes.empty())
                    terminal.Write(bytes);
            }
        });
    }
    ~Bridge() {
        isOver = true;
        carrier.join();
    }

    std::string Device() const { return terminal.Device().string(); }

private:
    PseudoTerminal terminal;
    std::atomic<bool> isOver = false;
    std::thread carrier;
};

class Machine {
public:
    explicit Machine(const std::string& settings) : installation({.settings = settings}) {
        LeadPortToDevice();
        (void)Driver().Receive(0, 0ms);
        process = std::make_unique<ChildProcess>(
            service, ChildProcess::Options{{"LASER"}, {{"TARVINDL_HOME", installation.Path().string()}}});
    }

    void LeadPortToDevice() {
        std::filesystem::remove(installation / "line");
        std::filesystem::create_symlink(Driver().Device(), installation / "line");
    }
    bool WaitForOutput(const std::string& text) { return process->WaitForOutput(text); }
    int Stop() {
        process->Signal(SIGTERM);
        return process->WaitForExit();
    }

    TemporaryInstallation installation;
    std::unique_ptr<ChildProcess> process;
};

std::string Program(int lineCount) {
    std::string text;
    for (int line = 0; line < lineCount; ++line)
        text += "N" + std::to_string(line) + " G01 X" + std::to_string(line * 7) + ".5 Y-12.25 F1200\r\n";
    return text;
}

}

TEST_CASE("Service: the controller sends a program and gets it back, byte for byte, with each flow control") {
    for (const char* flow : {"None", "Xon/Xoff", "Combined"}) {
        CAPTURE(flow);
        Machine machine(Settings(flow));
        REQUIRE(machine.WaitForOutput(std::string("LASER COM1:57600,N,8,1,") + flow));
        const TemporaryFolder folder;
        folder.WriteFile("program.nc", Program(40));
        const Bridge bridge;
        const std::string file = (folder / "program.nc").string();
        ChildProcess conversation(controller, {{"--port", bridge.Device(), "test", "put", "7", file, "check", "7", file,
                                                "refuse-get", "8", "test"}});
        CHECK(conversation.WaitForExit() == 0);
        CHECK_MESSAGE(machine.installation.ReadFile("NC/7.nc") == Program(40), conversation.Output());
        CHECK(machine.Stop() == 0);
    }
}

TEST_CASE("Service: a device that comes back within a transfer is served again, and nothing of before is sent") {
    for (const bool isHeld : {false, true}) {
        CAPTURE(isHeld);
        Machine machine(Settings("Xon/Xoff"));
        machine.installation.WriteFile("NC/7.nc", Program(2000));
        REQUIRE(machine.WaitForOutput("LASER COM1:57600"));
        Driver().Send(Message("ABSE7"));
        REQUIRE(machine.WaitForOutput("Downloading"));
        if (isHeld)
            Driver().Send("\x13" + Message("ABAK"));
        Driver().Unplug();
        REQUIRE(machine.WaitForOutput("LASER - No Link"));
        const auto plugged = std::chrono::steady_clock::now();
        Driver().Plug();
        machine.LeadPortToDevice();
        while (!Driver().Receive(1, 100ms).empty()) {
        }
        REQUIRE(machine.WaitForOutput("LASER COM1:57600"));
        const std::chrono::duration<double> away = std::chrono::steady_clock::now() - plugged;
        MESSAGE("served again ", away.count(), " s after it was plugged in");
        CHECK(Driver().Receive(1, 300ms).empty());
        Driver().Send(Message("ABTS"));
        CHECK(Driver().Receive(6, 10s) == Message("AATS"));
        CHECK(machine.Stop() == 0);
    }
}

TEST_CASE("Service: a mode that the device does not grant is told, and nothing crosses the line") {
    if (!Driver().IsSerialCore())
        return;
    Machine machine(Settings("None", "128000"));
    REQUIRE(machine.WaitForOutput("LASER - No Link"));
    CHECK(machine.WaitForOutput("Set Comm State: COM1 - Not granted: the device offers "));
    Driver().Send(Message("ABTS"));
    CHECK(Driver().Receive(1, 500ms).empty());
    CHECK(machine.Stop() == 0);
}
