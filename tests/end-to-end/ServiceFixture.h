#pragma once
// The real service in an installation of its own, at one end of a line. The test holds the other end, or lets the
// simulated controller make the line. Failures throw.

#include "harness/ChildProcessPosix.h"
#include "harness/PseudoTerminalPosix.h"
#include "harness/TemporaryInstallation.h"
#include "harness/WindowsProgramsPosix.h"

#include <csignal>
#include <memory>
#include <string>

namespace tarvin::test {

class ServiceFixture {
public:
    // `serviceEntries` are lines of the section "Service" of KEL.INI.
    explicit ServiceFixture(const std::string& machine = "LASER", const std::string& serviceEntries = {})
        : machine(machine), installation({.machine = machine, .service = serviceEntries}) {
        Connect();
    }

    // Makes a new line. The port's device is a link of our own to it: the system soon reuses the name of a closed
    // pseudo-terminal, perhaps for another test.
    void Connect(PseudoTerminal::Mode mode = PseudoTerminal::Mode::Raw) {
        terminal = std::make_unique<PseudoTerminal>(mode);
        std::filesystem::create_symlink(terminal->Device(), installation / "line");
        LetPortBeThere(true);
    }
    void Disconnect() {
        LetPortBeThere(false);
        std::filesystem::remove(installation / "line");
        terminal->Close();
    }

    // Tells Wine whether the port exists. For a test whose line comes from the simulated controller.
    void LetPortBeThere(bool isThere) {
        if (AreWindowsProgramsMeant())
            LeadWindowsPortTo(isThere ? installation / "line" : installation.Path());
    }

    void WriteSettings(std::string_view profile) { installation.WriteFile(installation.SettingsName(), profile); }

    // Starts the service and returns at once. `furtherWords` follow the machine's name on its command line.
    void Start(std::function<void()> beforeStart = {}, std::vector<std::string> furtherWords = {}) {
        furtherWords.insert(furtherWords.begin(), machine);
        service = std::make_unique<ChildProcess>(
            "tarvindl-service", ChildProcess::Options{furtherWords,
                                                      {{"TARVINDL_HOME", NameForProgram(installation.Path())}},
                                                      std::move(beforeStart)});
    }

    // Ends the service as its operator does. Returns its exit code.
    int Stop() {
        service->Signal(SIGTERM);
        return service->WaitForExit();
    }

    std::string NcFolder() const { return NameForProgram(installation.NcFolder()); }

    const std::string machine;
    TemporaryInstallation installation;
    std::unique_ptr<PseudoTerminal> terminal;
    std::unique_ptr<ChildProcess> service;
};

}
