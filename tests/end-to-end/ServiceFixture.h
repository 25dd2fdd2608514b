#pragma once
// The real service in an installation of its own, on one end of a pseudo-terminal.

#include "harness/ChildProcessPosix.h"
#include "harness/PseudoTerminalPosix.h"
#include "harness/TemporaryFolder.h"
#include "harness/WindowsProgramsPosix.h"

#include <algorithm>
#include <memory>
#include <string>

namespace tarvin::test {

class ServiceFixture {
public:
    explicit ServiceFixture(std::string machine = "LASER") : machineName(std::move(machine)) {
        std::filesystem::create_directory(folder / "NC");
        folder.WriteFile("KEL.INI", "[PROGRAM PATHS]\nNC Files=NC\n[PORTS]\nCOM1=" + (folder / "line").string() + "\n");
        WriteSettings("[Port Settings]\ntransmit delay=0\nflow control=None\n[Files]\nfile extension=nc\n");
        Connect();
    }

    // A new line, to which the port's device leads. By a name of its own: the system gives a terminal's name to the
    // next one at once, which may be another test's.
    void Connect(PseudoTerminal::Mode mode = PseudoTerminal::Mode::Raw) {
        terminal = std::make_unique<PseudoTerminal>(mode);
        std::filesystem::create_symlink(terminal->Device(), folder / "line");
        LetPortBeThere(true);
    }
    void Disconnect() {
        LetPortBeThere(false);
        std::filesystem::remove(folder / "line");
        terminal->Close();
    }

    // For whoever makes the line that the port leads to.
    void LetPortBeThere(bool isThere) {
        if (AreWindowsProgramsMeant())
            LeadWindowsPortTo(isThere ? folder / "line" : folder.Path());
    }

    void WriteSettings(std::string_view profile) { folder.WriteFile(SettingsName(), profile); }
    std::string SettingsName() const {
        std::string name = machineName + ".INI";
        std::replace(name.begin(), name.end(), '/', '_');
        return name;
    }

    // Starts it and waits until it serves the line.
    void Start(std::function<void()> beforeStart = {}, std::vector<std::string> furtherWords = {}) {
        furtherWords.insert(furtherWords.begin(), machineName);
        service = std::make_unique<ChildProcess>(
            "tarvindl-service", ChildProcess::Options{furtherWords,
                                                      {{"TARVINDL_HOME", NameForProgram(folder.Path())}},
                                                      std::move(beforeStart)});
    }

    std::string NcFolder() const { return NameForProgram(folder / "NC"); }

    std::string machineName;
    TemporaryFolder folder;
    std::unique_ptr<PseudoTerminal> terminal;
    std::unique_ptr<ChildProcess> service;
};

}
