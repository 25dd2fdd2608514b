#pragma once
// The real service in an installation of its own, on one end of a pseudo-terminal.

#include "support/ChildProcessPosix.h"
#include "support/PseudoTerminalPosix.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <memory>
#include <string>

namespace tarvin::test {

class ServiceFixture {
public:
    explicit ServiceFixture(std::string machine = "LASER") : machineName(std::move(machine)) {
        std::filesystem::create_directory(folder / "NC");
        WriteSettings("[Port Settings]\ntransmit delay=0\nflow control=None\n[Files]\nfile extension=nc\n");
        Connect();
    }

    // A new line, at which the port's device name now points.
    void Connect() {
        terminal = std::make_unique<PseudoTerminal>();
        folder.WriteFile("KEL.INI", "[PROGRAM PATHS]\nNC Files=NC\n[PORTS]\nCOM1=" + terminal->Device().string() + "\n");
    }

    void WriteSettings(std::string_view profile) { folder.WriteFile(SettingsName(), profile); }
    std::string SettingsName() const {
        std::string name = machineName + ".INI";
        std::replace(name.begin(), name.end(), '/', '_');
        return name;
    }

    // Starts it and waits until it serves the line.
    void Start(std::function<void()> beforeStart = {}) {
        service = std::make_unique<ChildProcess>(
            "tarvindl-service", ChildProcess::Options{{machineName},
                                                      {{"TARVINDL_HOME", folder.Path().string()}},
                                                      std::move(beforeStart)});
    }

    std::string NcFolder() const { return (folder / "NC").string(); }

    std::string machineName;
    TemporaryFolder folder;
    std::unique_ptr<PseudoTerminal> terminal;
    std::unique_ptr<ChildProcess> service;
};

}
