// tarvindl: the desktop program. One window for one machine.

#include "app/ProgramStart.h"
#include "app/Start.h"
#include "app/StopRequest.h"
#include "ui/DesktopInterface.h"
#include "ui/MainWindow.h"
#include "ui/ToolkitLog.h"

#include <filesystem>
#include <thread>
#include <vector>

namespace {

constexpr char usage[] = "Usage: tarvindl [MACHINE NAME]\n"
                         "\n"
                         "Holds the workstation end of the serial link to a machine's controller, and shows it.\n"
                         "\n"
                         "The whole command line is the machine's name, blanks included; without one it is\n"
                         "TARVIN. The machine's settings are in <installation>/<MACHINE NAME>.INI. The\n"
                         "installation is the folder named by TARVINDL_HOME, or else the first that holds\n"
                         "KEL.INI: the program's own, the user's, the system's.\n"
                         "\n"
                         "  --help     this text\n"
                         "  --version  the version\n";

// The help book is part of the installation, or lies where the program was built or installed.
std::vector<std::filesystem::path> HelpFiles(const tarvin::Installation& paths) {
    constexpr char name[] = "comshelp.htb";
    std::vector<std::filesystem::path> files = {paths.Folder() / name};
    if (const auto program = tarvin::ProgramFolder()) {
        for (const char* folder : {".", "../share", "../share/tarvindl"})
            files.push_back(*program / folder / name);
    }
    return files;
}

class DesktopApp : public wxApp {
public:
    DesktopApp(const tarvin::Installation& programPaths, tarvin::KelText text)
        : paths(programPaths), commandLine(std::move(text)) {
        SetAppName("TarvinDL");
    }

    // The command line is the machine's name and none of the toolkit's.
    bool OnInit() override { return true; }
    int OnRun() override;

private:
    const tarvin::Installation paths;
    const tarvin::KelText commandLine;
};

int DesktopApp::OnRun() {
    const tarvin::KelText machineName = tarvin::Start::MachineName(commandLine);
    tarvin::EngineEvents events;
    tarvin::Start::LoadDictionary(paths, commandLine,
                                  [&events](const tarvin::MessageBoxText& box) { events.ShowMessage(box); });
    tarvin::DesktopInterface app({tarvin::Start::MachineFolder(paths, machineName)});
    const tarvin::ToolkitLog toolkitLog(app);
    app.ReadSuppressedMessages();
    tarvin::HelpBook help(HelpFiles(paths));
    const tarvin::Start start(paths, events);
    const auto engine = start.MakeEngine(machineName);

    auto* window = new tarvin::MainWindow({*engine, events, help, paths.PathsFile()}, app);
    app.UseWindow(window);
    engine->Create();
    window->Show();
    engine->StartMonitor();
    std::thread stopWatcher([&events, window] {
        tarvin::WaitForStopRequest();
        events.Post([window] { window->Close(true); });
    });
    const int result = wxApp::OnRun();
    app.UseWindow(nullptr);
    tarvin::EndStopRequests();
    stopWatcher.join();
    return result;
}

}

int main(int argumentCount, char** arguments) {
    const auto start = tarvin::BeginProgram(argumentCount, arguments, "tarvindl", usage);
    if (!start)
        return 0;
    tarvin::PrepareStopRequests();
    // That there is no display can be told in no window.
    delete wxLog::SetActiveTarget(new wxLogStderr);
    // A doubt of the toolkit's about itself must not stand between a user and the line.
    wxDisableAsserts();
    wxApp::SetInstance(new DesktopApp(start->paths, start->commandLine));
    int toolkitArgumentCount = 1;
    // Below zero if the toolkit has found no display; it has said so.
    return wxEntry(toolkitArgumentCount, arguments) < 0 ? 1 : 0;
}
