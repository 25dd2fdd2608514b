// tarvindl: the desktop program. One window for one machine.

#include "app/Desktop.h"
#include "app/MachineClaim.h"
#include "app/StopRequest.h"
#include "base/NotificationMessages.h"
#include "files/ProgramRequests.h"
#include "ui/CustomMessage.h"
#include "ui/ModalLoop.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr char usage[] = "Usage: tarvindl [MACHINE NAME] [/l=LANGUAGE]\n"
                         "\n"
                         "Holds the workstation end of the serial link to a machine's controller, and\n"
                         "shows it.\n"
                         "\n"
                         "The whole command line is the machine's name, blanks included; without one it is\n"
                         "TARVIN. The machine's settings are in <installation>/<MACHINE NAME>.INI. The\n"
                         "installation is the folder named by TARVINDL_HOME, or else the first that holds\n"
                         "KEL.INI: the program's own, the user's, the system's.\n"
                         "\n"
                         "If the machine has a window already, that window comes to the front. If a\n"
                         "service serves the machine, the window shows it and cannot act. If another\n"
                         "user's window does, a box says so, and the exit code is 3.\n"
                         "\n"
                         "  /l=LANGUAGE  the language of the window, such as /l=German\n"
                         "  --help       this text\n"
                         "  --version    the version\n";

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

// What other processes may ask of the window.
struct Requests {
    tarvin::ProgramRequests raise{tarvin::RequestKind::Raise};
    tarvin::ProgramRequests reload{tarvin::RequestKind::Reload};
};

class DesktopApp : public wxApp {
public:
    DesktopApp(const tarvin::Program& program, std::unique_ptr<Requests> requests, tarvin::Desktop::Role role)
        : program(program), requests(std::move(requests)), role(role) {
        SetAppName("TarvinDL");
    }

    // The command line holds no options of the toolkit.
    bool OnInit() override {
        // No control is brought up to date by the toolkit's idle events. Otherwise each event asks every window.
        wxUpdateUIEvent::SetMode(wxUPDATE_UI_PROCESS_SPECIFIED);
        // The system does not ask before it ends the session, and neither does the window.
        Bind(wxEVT_QUERY_END_SESSION, [](wxCloseEvent&) {});
        return true;
    }

    int OnRun() override {
        tarvin::Desktop desktop(program, HelpFiles(program.Place()), tarvin::SystemLanguage(), role);
        desktop.Start();
        requests->raise.Serve([&desktop](tarvin::ProgramRequests::Answer answer) {
            desktop.RequestRaise([answer = std::move(answer)] { answer(tarvin::RequestAnswer::Done); });
        });
        // A window that watches has no settings of its own.
        if (role == tarvin::Desktop::Role::Serve)
            requests->reload.Serve([&desktop](tarvin::ProgramRequests::Answer answer) {
                desktop.Engine().ReloadSettings(std::move(answer));
            });
        std::thread stopWatcher([&desktop] {
            tarvin::WaitForStopRequest();
            desktop.RequestClose();
        });
        const int result = wxApp::OnRun();
        tarvin::EndStopRequests();
        stopWatcher.join();
        // A second start learns from now on that this window is going, and waits until the machine is free.
        requests.reset();
        return result;
    }

private:
    const tarvin::Program& program;
    std::unique_ptr<Requests> requests;
    const tarvin::Desktop::Role role;
};

// Whether a window can show what the service publishes that has the machine. A service that has just started needs a
// moment for its first status.
bool CanBeWatched(const tarvin::Program& program, const tarvin::MachineClaim& claim) {
    if (!claim.holder || claim.holder->kind != tarvin::MachineHolder::Kind::Service)
        return false;
    constexpr auto longestWait = std::chrono::seconds(2);
    constexpr auto pollPeriod = std::chrono::milliseconds(50);
    const auto deadline = program.EngineClock().Now() + longestWait;
    for (;;) {
        const auto machine = tarvin::FindMachine(program.Place().Folder(), program.MachineName(),
                                                 tarvin::PresentOf(program.EngineClock()));
        if (machine.status && machine.run != tarvin::KnownMachine::Run::Died)
            return true;
        if (program.EngineClock().Now() > deadline)
            return false;
        std::this_thread::sleep_for(pollPeriod);
    }
}

// What a user is told of a machine that another program serves.
tarvin::ProgramStart ServedElsewhere(const tarvin::Program& program, const tarvin::MachineClaim& claim) {
    std::fprintf(stderr, "tarvindl: %s\n", tarvin::ToUtf8(claim.problem()).c_str());
    // The box speaks the user's language as far as it can.
    (void)program.LoadDictionary(tarvin::SystemLanguage());
    tarvin::SpeakDictionary();
    const auto caption = tarvin::Filled(tarvin::text::machine::servedCaption, {program.MachineName()});
    const tarvin::MessageBoxText box = {claim.problem(), caption, tarvin::okOnly | tarvin::iconExclamation};
    return {std::nullopt, tarvin::servedElsewhereExitCode, box};
}

}

int main(int argumentCount, char** arguments) {
    auto start = tarvin::Program::Begin(argumentCount, arguments, "tarvindl", usage);
    if (!start.program && !start.problem)
        return start.exitCode;
    auto requests = std::make_unique<Requests>();
    // Kept until the engine has ended.
    tarvin::MachineClaim claim;
    auto role = tarvin::Desktop::Role::Serve;
    if (start.program) {
        claim = tarvin::ClaimForWindow(*start.program, requests->raise.Address(), requests->reload.Address());
        if (claim.isRaised)
            return 0;
        if (!claim.lock && CanBeWatched(*start.program, claim))
            role = tarvin::Desktop::Role::Watch;
        else if (!claim.lock)
            start = ServedElsewhere(*start.program, claim);
    }
    // A program that only shows a box ends by the signal, as every program does that expects none.
    if (start.program)
        tarvin::PrepareStopRequests();
    // The toolkit reports a missing display before it can show a window.
    delete wxLog::SetActiveTarget(new wxLogStderr);
    // A failed assertion of the toolkit opens a box, which would block the window.
    wxDisableAsserts();
    if (start.program)
        wxApp::SetInstance(new DesktopApp(*start.program, std::move(requests), role));
    else
        wxApp::SetInstance(new ProblemApp(start));
    int toolkitArgumentCount = 1;
    // A negative result means that the toolkit has found no display, and has reported that.
    const int result = wxEntry(toolkitArgumentCount, arguments);
    return result < 0 ? 1 : start.program ? 0 : result;
}
