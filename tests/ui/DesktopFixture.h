#pragma once
// The desktop program's window and engine in this process, in an installation of their own, on one end of a line.

#include "User.h"
#include "app/Start.h"
#include "harness/ChildProcessPosix.h"
#include "harness/PseudoTerminalPosix.h"
#include "harness/TemporaryInstallation.h"
#include "ui/DesktopInterface.h"
#include "ui/MainWindow.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvin::test {

class DesktopFixture {
public:
    // `profile` is what stands in the settings file, in text form.
    explicit DesktopFixture(const std::string& profile = "[Port Settings]\ntransmit delay=0\nflow control=None\n"
                                                         "[Files]\nfile extension=nc\n");
    // Closes the window as its user would.
    ~DesktopFixture();

    // A line whose other end the test holds, or the simulated controller.
    void Connect();
    void Disconnect();
    // The box that tells of a line that is gone; null if there is none within a while. Which step of a look at the port
    // comes upon it first is chance.
    wxTopLevelWindow* OutageBox() { return WindowTitledOneOf({"Comms Status Check", "Read Data"}); }
    ChildProcess& RunController(std::vector<std::string> commands);

    void Start();
    // Asks the window to close; true once it has gone and the engine with it.
    bool Close(std::chrono::milliseconds longest = std::chrono::seconds(5));

    std::string Status();
    std::string Caption();
    bool StatusBecomes(const std::string& text);
    bool CaptionBecomes(const std::string& text);
    MainPanel& Panel() { return window->Panel(); }

    TemporaryInstallation folder;
    std::unique_ptr<PseudoTerminal> terminal;
    std::unique_ptr<ChildProcess> controller;
    std::unique_ptr<TarvinApp> engine;
    MainWindow* window = nullptr;

private:
    std::optional<EngineEvents> events;
    std::optional<DesktopInterface> app;
    std::optional<HelpBook> help;
    std::optional<tarvin::Start> start;
};

}
