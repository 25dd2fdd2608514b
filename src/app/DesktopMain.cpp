// tarvindl: the desktop program. One window for one machine.

#include "app/ProgramStart.h"
#include "app/Start.h"
#include "app/StopRequest.h"
#include "messages/AppInterface.h"
#include "ui/HelpBook.h"
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

// The help book is in the installation, or beside the program as it was built or installed.
std::vector<std::filesystem::path> HelpFiles(const tarvin::ProgramPaths& paths) {
    constexpr char name[] = "comshelp.htb";
    std::vector<std::filesystem::path> files = {paths.Installation() / name};
    if (const auto program = tarvin::ProgramFolder()) {
        for (const char* folder : {".", "../share", "../share/tarvindl"})
            files.push_back(*program / folder / name);
    }
    return files;
}

class DesktopApp : public wxApp {
public:
    DesktopApp(const tarvin::ProgramPaths& programPaths, tarvin::KelText text)
        : paths(programPaths), commandLine(std::move(text)) {
        SetAppName("TarvinDL");
    }

    // The command line holds no options of the toolkit.
    bool OnInit() override { return true; }
    int OnRun() override;

private:
    const tarvin::ProgramPaths paths;
    const tarvin::KelText commandLine;
};

int DesktopApp::OnRun() {
    const tarvin::KelText machineName = tarvin::Start::MachineName(commandLine);
    tarvin::WindowEvents events;
    tarvin::Start::LoadDictionary(paths, commandLine,
                                  [&events](const tarvin::MessageBoxText& box) { events.ShowMessage(box); });
    tarvin::AppInterface app({tarvin::Start::MachineFolder(paths, machineName)});
    const tarvin::ToolkitLog toolkitLog(app);
    app.ReadSuppressedMessages();
    tarvin::HelpBook help(HelpFiles(paths));
    const tarvin::Start start(paths, events);
    const auto engine = start.MakeEngine(machineName);

    auto* window = new tarvin::MainWindow({*engine, events, help, paths.PathsFile()}, app);
    window->Show();
    engine->Start();
    std::thread stopWatcher([&events, window] {
        tarvin::WaitForStopRequest();
        events.Post([window] { window->Close(true); });
    });
    const int result = wxApp::OnRun();
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
    // The toolkit reports a missing display before it can show a window.
    delete wxLog::SetActiveTarget(new wxLogStderr);
    // A failed assertion of the toolkit opens a box, which would block the window.
    wxDisableAsserts();
    wxApp::SetInstance(new DesktopApp(start->paths, start->commandLine));
    int toolkitArgumentCount = 1;
    // A negative result means that the toolkit has found no display, and has reported that.
    return wxEntry(toolkitArgumentCount, arguments) < 0 ? 1 : 0;
}
