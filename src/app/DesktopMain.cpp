// tarvindl: the desktop program. One window for one machine.

#include "app/Desktop.h"
#include "app/StopRequest.h"
#include "ui/CustomMessage.h"
#include "ui/ModalLoop.h"

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

// Shows why the program cannot start. The help book may be missing too, so the box has none.
class ProblemApp : public wxApp {
public:
    explicit ProblemApp(const tarvin::ProgramStart& start) : start(start) { SetAppName("TarvinDL"); }

    bool OnInit() override { return true; }

    int OnRun() override {
        tarvin::CustomMessage message(nullptr, *start.problem, [] {});
        tarvin::ModalLoop([](bool) {}).Run(message);
        return start.exitCode;
    }

private:
    const tarvin::ProgramStart& start;
};

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
    const auto start = tarvin::Program::Begin(argumentCount, arguments, "tarvindl", usage);
    if (!start.program && !start.problem)
        return start.exitCode;
    // A program that only shows a box ends by the signal, as every program does that expects none.
    if (start.program)
        tarvin::PrepareStopRequests();
    // The toolkit reports a missing display before it can show a window.
    delete wxLog::SetActiveTarget(new wxLogStderr);
    // A failed assertion of the toolkit opens a box, which would block the window.
    wxDisableAsserts();
    if (start.program)
        wxApp::SetInstance(new DesktopApp(*start.program));
    else
        wxApp::SetInstance(new ProblemApp(start));
    int toolkitArgumentCount = 1;
    // A negative result means that the toolkit has found no display, and has reported that.
    const int result = wxEntry(toolkitArgumentCount, arguments);
    return result < 0 ? 1 : start.program ? 0 : result;
}
