#pragma once
// The window and the engine of the desktop program in this process, in an installation of their own, on a line.

#include "User.h"
#include "app/Desktop.h"
#include "harness/ChildProcessPosix.h"
#include "harness/PseudoTerminalPosix.h"
#include "harness/TemporaryInstallation.h"
#include "ui/MainPanel.h"
#include "ui/MainWindow.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvin::test {

class DesktopFixture {
public:
    // `profile` is the content of the settings file, in text form.
    explicit DesktopFixture(const std::string& profile = "[Port Settings]\ntransmit delay=0\nflow control=None\n"
                                                         "[Files]\nfile extension=nc\n");
    // Closes the window as its user would.
    ~DesktopFixture();

    // A line with the test at its other end. RunController makes one with the simulated controller instead.
    void Connect();
    void Disconnect();
    // The box of an outage; null if there is none within a while. Chance decides which step finds the outage first.
    wxTopLevelWindow* OutageBox() { return WindowTitledOneOf({"Comms Status Check", "Read Data"}); }
    ChildProcess& RunController(std::vector<std::string> commands);

    void Start(Desktop::Role role = Desktop::Role::Serve);
    // Asks the window to close. True if it has closed in time; the engine has ended then.
    bool Close(std::chrono::milliseconds longest = std::chrono::seconds(5));

    std::string Status();
    std::string Caption();
    bool StatusBecomes(const std::string& text);
    bool CaptionBecomes(const std::string& text);
    MainPanel& Panel() { return window->Panel(); }
    DownloadApp& Engine() { return desktop->Engine(); }

    TemporaryInstallation folder;
    std::unique_ptr<PseudoTerminal> terminal;
    std::unique_ptr<ChildProcess> controller;
    MainWindow* window = nullptr;

private:
    Desktop::Role startedRole = Desktop::Role::Serve;
    std::optional<Program> program;
    std::unique_ptr<Desktop> desktop;
};

}
