// tarvindl: the desktop program. One window for one machine.

#include "app/Desktop.h"
#include "app/StopRequest.h"

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
std::vector<std::filesystem::path> HelpFiles(const tarvin::Installation& installation) {
    constexpr char name[] = "comshelp.htb";
    std::vector<std::filesystem::path> files = {installation.Folder() / name};
    if (const auto program = tarvin::ProgramFolder()) {
        for (const char* folder : {".", "../share", "../share/tarvindl"})
            files.push_back(*program / folder / name);
    }
    return files;
}

class DesktopApp : public wxApp {
public:
    explicit DesktopApp(const tarvin::Program& program) : program(program) { SetAppName("TarvinDL"); }

    // The command line holds no options of the toolkit.
    bool OnInit() override { return true; }

    int OnRun() override {
        tarvin::Desktop desktop(program, HelpFiles(program.Place()));
        desktop.Start();
        std::thread stopWatcher([&desktop] {
            tarvin::WaitForStopRequest();
            desktop.RequestClose();
        });
        const int result = wxApp::OnRun();
        tarvin::EndStopRequests();
        stopWatcher.join();
        return result;
    }

private:
    const tarvin::Program& program;
};

}

int main(int argumentCount, char** arguments) {
    const auto program = tarvin::Program::Begin(argumentCount, arguments, "tarvindl", usage);
    if (!program)
        return 0;
    tarvin::PrepareStopRequests();
    // The toolkit reports a missing display before it can show a window.
    delete wxLog::SetActiveTarget(new wxLogStderr);
    // A failed assertion of the toolkit opens a box, which would block the window.
    wxDisableAsserts();
    wxApp::SetInstance(new DesktopApp(*program));
    int toolkitArgumentCount = 1;
    // A negative result means that the toolkit has found no display, and has reported that.
    return wxEntry(toolkitArgumentCount, arguments) < 0 ? 1 : 0;
}
