// tarvindl-service: the engine without a display, unattended. One process for one machine.

#include "app/CommandLine.h"
#include "app/FolderTrial.h"
#include "app/MachineClaim.h"
#include "app/Program.h"
#include "app/ServiceCommands.h"
#include "app/ServiceControl.h"
#include "app/ServiceEvents.h"
#include "app/ServiceHost.h"
#include "app/ServiceNotify.h"
#include "app/ServiceSettings.h"
#include "app/StopRequest.h"
#include "base/ProgramOutput.h"
#include "base/SetupMessages.h"
#include "base/System.h"
#include "files/ProgramRequests.h"
#include "publish/StatusPublisher.h"
#include "setup/AssignPort.h"
#include "setup/MachineCheck.h"

#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

namespace {

constexpr const char* programName = "tarvindl-service";

constexpr char usage[] = "Usage: tarvindl-service [MACHINE NAME] [/l=LANGUAGE]\n"
                         "\n"
                         "Holds the workstation end of the serial link to a machine's controller: answers\n"
                         "its link tests, stores the NC files that it sends, sends those that it asks for.\n"
                         "Each change of the status is a line of output. SIGTERM and Ctrl-C end it.\n"
                         "\n"
                         "The whole command line is the machine's name; without one it is TARVIN. The\n"
                         "settings are in <installation>/<MACHINE NAME>.INI. The installation is the\n"
                         "folder named by TARVINDL_HOME, or the first that holds KEL.INI: the program's\n"
                         "own, the user's, the system's. Exit code 3: another program serves the machine.\n"
                         "\n"
                         "  /l=LANGUAGE                  the language of the texts, such as /l=German\n"
                         "  --assign-port DEVICE [NAME]  gives a device (/dev/ttyUSB0) a port name, and\n"
                         "                               the machine settings, if there are none\n"
                         "  --check [NAME]               tells what is wrong with settings, port and\n"
                         "                               folders, and ends\n"
                         "  --help, --version            this text, the version\n"
                         "\n"
                         "On Windows, as an administrator:\n"
                         "  --install-service [--account ACCOUNT] [--installation FOLDER] [NAME]\n"
                         "                               starts it with the system\n"
                         "  --remove-service [NAME]      no longer\n"
                         "  --services start|stop|remove   for all machines of this program\n";

// The exit code of the program.
int Serve(const tarvin::Program& program, tarvin::ServiceHost& host) {
    // Before the first thread starts: all threads inherit what this one does about signals.
    host.PrepareStop();
    tarvin::ServiceNotify notify;
    tarvin::ProgramRequests reloads(tarvin::RequestKind::Reload);
    const auto claim = tarvin::ClaimForService(program, reloads.Address());
    if (!claim.lock) {
        host.TellFailure(claim.problem());
        return tarvin::servedElsewhereExitCode;
    }
    tarvin::ServiceOutput output([&host](const tarvin::ServiceLine& line) { host.Print(line); });
    tarvin::AppInterface messages({program.MachineFolder()},
                                  [&output](tarvin::KelTextView note) { output.AddNote(note); });
    if (const auto loaded = program.LoadDictionary(); !loaded)
        messages.AnswerWithoutUser(messages.ReportFailure(loaded.Reason().text));
    messages.ReadSuppressedMessages();
    tarvin::ServiceEvents events(output, notify, messages);
    tarvin::StatusPublisher publisher(
        {program.MachineName(), program.Place().Folder(), tarvin::MachineHolder::Kind::Service}, events,
        program.EngineClock());
    const auto engine = program.MakeEngine(publisher);
    publisher.TellProblems([&engine](const tarvin::KelText& problem) { engine->Announce(problem); });
    tarvin::FolderTrial folders(*engine);
    events.OnSettings([&folders](const tarvin::DownloadSettings& settings) { folders.SettingsChanged(settings); });
    const auto settings = tarvin::ReadServiceSettings(program.Place(), program.MachineName());
    if (settings.commsLog)
        engine->StartRollingCommsLog(*settings.commsLog, settings.commsLogSizeLimit);
    engine->SetHeartbeat(notify.AlivePeriod(), [&notify, isReady = false]() mutable {
        // The first beat: the engine serves. The port may be missing, which the status tells.
        if (!std::exchange(isReady, true))
            notify.Ready();
        else
            notify.Alive();
    });
    engine->Start();
    host.ReportServing();
    const auto reload = [&](tarvin::ProgramRequests::Answer answer) {
        notify.Reloading();
        engine->ReloadSettings([&notify, answer = std::move(answer)](tarvin::RequestAnswer given) {
            notify.Ready();
            answer(given);
        });
    };
    reloads.Serve(reload);
    tarvin::WaitForStopRequest([&] { reload([](tarvin::RequestAnswer) {}); });
    reloads.End();
    notify.Stopping();
    engine->Stop();
    publisher.Finish();
    output.Add(tarvin::text::service::programEnd);
    // A reader that has stopped reading must not keep the process: the runtime would wait for it to flush the output.
    if (!output.Finish()) {
        host.ReportEnd(0);
        std::_Exit(0);
    }
    return 0;
}

// A misspelt option, or one behind another word, must not become a machine that is served.
bool IsOption(const tarvin::KelText& machineName) {
    if (!machineName.starts_with(u"--") && machineName.find(u" --") == tarvin::KelText::npos)
        return false;
    std::fprintf(stderr, "tarvindl-service: %s is no machine. An option comes first: see tarvindl-service --help\n",
                 tarvin::ToUtf8(machineName).c_str());
    return true;
}

// Both give the exit code of the program. `words` are the words of the command line.
int RunCheck(const std::vector<tarvin::KelText>& words) {
    tarvin::SecureStandardStreams();
    const auto name = tarvin::MachineNameOf(tarvin::JoinWords({words.begin() + 1, words.end()}));
    if (IsOption(name))
        return 2;
    const auto installation = tarvin::FindProgramInstallation();
    const auto findings = installation ? tarvin::CheckMachine(*installation, name)
                                       : std::vector<tarvin::Finding>{{installation.Reason().text, true}};
    std::fputs(tarvin::ToUtf8(tarvin::DescribeFindings(findings)).c_str(), stdout);
    return tarvin::EndOutput(programName, tarvin::HasProblem(findings) ? 1 : 0);
}

int RunAssignPort(const std::vector<tarvin::KelText>& words) {
    tarvin::SecureStandardStreams();
    const auto device = words.size() > 1 ? tarvin::ToPath(words[1]) : std::filesystem::path();
    const auto machineWords = words.begin() + (words.size() > 1 ? 2 : 1);
    const auto done = tarvin::AssignPort(device, tarvin::MachineNameOf(tarvin::JoinWords({machineWords, words.end()})));
    if (!done) {
        std::fprintf(stderr, "tarvindl-service: %s\n", tarvin::ToUtf8(done.Reason().text).c_str());
        return 1;
    }
    std::printf("%s\n", tarvin::ToUtf8(*done).c_str());
    return tarvin::EndOutput(programName, 0);
}

// What the service manager starts: the installation and the command line of the machine are words of their own.
int RunManaged(const std::vector<tarvin::KelText>& words) {
    const auto served = tarvin::RunForServiceManager([&words](tarvin::ServiceHost& host) {
        const auto installation = tarvin::Installation::Read(tarvin::ToPath(words.size() > 1 ? words[1] : u""));
        if (!installation) {
            host.TellFailure(installation.Reason().text);
            return 1;
        }
        const tarvin::Program program(*installation, words.size() > 2 ? words[2] : tarvin::KelText());
        return Serve(program, host);
    });
    if (served)
        return 0;
    tarvin::TerminalHost().TellFailure(served.Reason().text);
    return 2;
}

}

int main(int argumentCount, char** arguments) {
    const auto words = tarvin::ProgramArguments(argumentCount, arguments);
    const auto first = words.empty() ? tarvin::KelText() : words.front();
    if (first == u"--assign-port")
        return RunAssignPort(words);
    if (first == u"--check")
        return RunCheck(words);
    if (first == tarvin::runServiceOption)
        return RunManaged(words);
    if (const auto result = tarvin::RunServiceCommand(words)) {
        tarvin::SecureStandardStreams();
        if (*result)
            std::printf("%s\n", tarvin::ToUtf8(**result).c_str());
        else
            tarvin::TerminalHost().TellFailure(result->Reason().text);
        return *result ? tarvin::EndOutput(programName, 0) : 1;
    }
    const bool wantsText = words.size() == 1 && (first == u"--help" || first == u"--version");
    if (!wantsText && IsOption(tarvin::MachineNameIn(tarvin::JoinWords(words))))
        return 2;
    const auto start = tarvin::Program::Begin(argumentCount, arguments, programName, usage);
    if (!start.program)
        return start.exitCode;
    tarvin::TerminalHost terminal;
    return Serve(*start.program, terminal);
}
