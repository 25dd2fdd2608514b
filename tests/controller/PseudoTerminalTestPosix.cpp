#include "ProgramThread.h"
#include "controller/Session.h"
#include "harness/ChildProcessPosix.h"
#include "harness/PseudoTerminalPosix.h"
#include "harness/TemporaryFolder.h"
#include "harness/WaitUntil.h"

#include <csignal>
#include <future>
#include <sstream>

#include <doctest/doctest.h>

using namespace tarvin::controller;
using namespace tarvin::controller::test;
using tarvin::test::ChildProcess;
using tarvin::test::PseudoTerminal;
using tarvin::test::TemporaryFolder;
using tarvin::test::WaitUntil;

namespace {

struct RunResult {
    int status = -1;
    std::string output;
    std::string errors;
};

RunResult Control(const std::vector<std::string>& arguments) {
    std::ostringstream output;
    std::ostringstream errors;
    const int status = RunController(arguments, "1", output, errors);
    return {status, output.str(), errors.str()};
}

bool IsLink(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_symlink(std::filesystem::symlink_status(path, ignored));
}

}

TEST_CASE("PseudoTerminal: files arrive byte for byte, and the end of the controller hangs up") {
    const TemporaryFolder folder;
    std::string everyByte;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '\r' && byte != '\n')
            everyByte += static_cast<char>(byte);
    }
    folder.WriteFile("expected", everyByte + "\n\nN20\r\n");
    folder.WriteFile("printable", "N10 G1\r\n\r\nN20 %d~\r\n");
    ProgramDouble program;
    program.files["7"] = {everyByte, "N20"};
    ProgramThread thread(program, folder / "line");
    const std::string expected = (folder / "expected").string();
    const RunResult result = Control({"--pty", folder / "line", "--split", "--noise", "50", "test", "check", "7",
                                      expected, "get", "7", folder / "stored", "put", "8", folder / "printable"});
    CHECK_MESSAGE(result.status == ExitStatus::right, result.output, result.errors);
    CHECK(folder.ReadFile("stored") == everyByte + "\r\nN20\r\n");
    CHECK_FALSE(IsLink(folder / "line"));
    thread.Join();
    CHECK(thread.SawHangUp());
    CHECK(thread.Program().files.at("8") == ProgramDouble::Lines{"N10 G1", "N20 %d~"});
}

TEST_CASE("PseudoTerminal: a program that is missing or closes the line fails the run") {
    const TemporaryFolder folder;
    const RunResult missing = Control({"--pty", folder / "line", "--connect", "0.05", "test"});
    CHECK(missing.status == ExitStatus::failed);
    CHECK(missing.output == "connect: FAILED: nobody has opened the line in 0.05 s\n");
    ProgramDouble program;
    program.files["7"] = ProgramDouble::Lines(1000, "N10");
    const ProgramThread leaving(program, folder / "line", 100);
    const RunResult gone = Control({"--pty", folder / "line", "get", "7", folder / "stored"});
    CHECK(gone.status == ExitStatus::failed);
    CHECK_MESSAGE(gone.output.find("the other side has closed the line") != std::string::npos, gone.output);
    CHECK_FALSE(std::filesystem::exists(folder / "stored"));
    CHECK_FALSE(IsLink(folder / "line"));
}

TEST_CASE("PseudoTerminal: a program may close the line and open it again, and bytes on their way are lost") {
    const TemporaryFolder folder;
    std::vector<std::string> arguments = {"--pty", folder / "line", "--timeout", "0.2", "--delay", "2"};
    arguments.insert(arguments.end(), 200, "test");
    auto result = std::async(std::launch::async, Control, arguments);
    for (int round = 0; round < 3; ++round)
        ProgramThread({}, folder / "line", 20).Join();
    const ProgramThread last({}, folder / "line");
    const RunResult run = result.get();
    CHECK_MESSAGE(run.status == ExitStatus::right, run.output);
}

TEST_CASE("DeviceLine: a device is set up and served, and one that cannot be opened is refused with its reason") {
    // Cooked: the controller has to set up the device itself.
    PseudoTerminal terminal(PseudoTerminal::Mode::Cooked);
    // Until the controller opens the device, the thread would read a hang-up.
    terminal.HoldDevice();
    const std::string device = terminal.Device();
    {
        ProgramDouble program;
        program.files["7"] = {"N10 \x03\x11\x13", "N20"};
        const ProgramThread thread(program, terminal.Descriptor());
        const RunResult result = Control({"--port", device, "--baud", "19200", "test", "get", "7", "--nak-every", "1"});
        CHECK_MESSAGE(result.status == ExitStatus::right, result.output, result.errors);
        CHECK(result.output.find("2 repeats, ok") != std::string::npos);
    }
    CHECK(Control({"--port", device, "--baud", "12345", "test"}).errors.find("12345 bits") != std::string::npos);
    const TemporaryFolder folder;
    folder.WriteFile("file", "");
    for (const char* name : {"file", "missing"}) {
        const RunResult result = Control({"--port", folder / name, "test"});
        CHECK(result.status == ExitStatus::failed);
        CHECK(result.errors.starts_with("tarvin-controller: " + (folder / name).string() + ": "));
    }
}

TEST_CASE("PseudoTerminal: only a link that leads nowhere is replaced") {
    const TemporaryFolder folder;
    folder.WriteFile("line", "precious");
    RunResult result = Control({"--pty", folder / "line", "test"});
    CHECK(result.status == ExitStatus::failed);
    CHECK(result.errors.find("exists and is not a link left over") != std::string::npos);
    CHECK(folder.ReadFile("line") == "precious");
    std::filesystem::create_symlink(folder / "line", folder / "other");
    CHECK(Control({"--pty", folder / "other", "test"}).status == ExitStatus::failed);
    CHECK(std::filesystem::read_symlink(folder / "other") == folder / "line");
    std::filesystem::create_symlink("/dev/pts/nowhere", folder / "stale");
    ProgramThread thread({}, folder / "stale");
    result = Control({"--pty", folder / "stale", "test"});
    CHECK_MESSAGE(result.status == ExitStatus::right, result.output, result.errors);
    CHECK_FALSE(IsLink(folder / "stale"));
}

TEST_CASE("PseudoTerminal: a signal removes the link and ends the process by that signal") {
    const TemporaryFolder folder;
    for (const int signalNumber : {SIGINT, SIGTERM}) {
        ChildProcess controller("tarvin-controller", {{"--pty", folder / "line", "--connect", "60", "test"}});
        CHECK(WaitUntil([&] { return IsLink(folder / "line"); }));
        controller.Signal(signalNumber);
        CHECK(controller.WaitForExit() == -signalNumber);
        CHECK_FALSE(IsLink(folder / "line"));
    }
}
