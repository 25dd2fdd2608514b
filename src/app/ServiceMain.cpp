// tarvindl-service: the engine without a display, unattended. One process for one machine.

#include "app/AssignPort.h"
#include "app/CommandLine.h"
#include "app/MachineClaim.h"
#include "app/Program.h"
#include "app/ServiceEvents.h"
#include "app/ServiceOutput.h"
#include "app/ServiceSettings.h"
#include "app/StopRequest.h"
#include "base/Messages.h"
#include "base/System.h"
#include "publish/StatusPublisher.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr char usage[] = "Usage: tarvindl-service [MACHINE NAME]\n"
                         "       tarvindl-service --assign-port DEVICE [MACHINE NAME]\n"
                         "\n"
                         "Holds the workstation end of the serial link to a machine's controller: answers its\n"
                         "link tests, stores the NC files that it sends and sends those that it asks for.\n"
                         "\n"
                         "The whole command line is the machine's name, blanks included; without one it is\n"
                         "TARVIN. The machine's settings are in <installation>/<MACHINE NAME>.INI. The\n"
                         "installation is the folder named by TARVINDL_HOME, or else the first that holds\n"
                         "KEL.INI: the program's own, the user's, the system's.\n"
                         "\n"
                         "Each change of the status is a line on standard output. SIGTERM and SIGINT end the\n"
                         "program in order. If another program serves the machine already, the service says so\n"
                         "and ends with exit code 3.\n"
                         "\n"
                         "--assign-port gives DEVICE, such as /dev/ttyUSB0, a port name in KEL.INI and writes the\n"
                         "machine's settings with that port if there are none. If there is no installation, it\n"
                         "makes one. It fails, and changes nothing, if the settings name a port of another device.\n"
                         "\n"
                         "  --help     this text\n"
                         "  --version  the version\n";

int Serve(const tarvin::Program& program) {
    // Before the first thread starts: all threads inherit what this one does about signals.
    tarvin::PrepareStopRequests();
    const auto claim = tarvin::ClaimForService(program);
    if (!claim.lock) {
        std::fprintf(stderr, "tarvindl-service: %s\n", tarvin::ToUtf8(claim.problem()).c_str());
        return tarvin::servedElsewhereExitCode;
    }
    tarvin::ServiceOutput output;
    tarvin::AppInterface messages({program.MachineFolder()},
                                  [&output](tarvin::KelTextView note) { output.AddNote(note); });
    if (const auto loaded = program.LoadDictionary(); !loaded)
        messages.AnswerWithoutUser(messages.ReportFailure(loaded.Reason().text));
    messages.ReadSuppressedMessages();
    tarvin::ServiceEvents events(output, messages);
    tarvin::StatusPublisher publisher(
        {program.MachineName(), program.Place().Folder(), tarvin::MachineHolder::Kind::Service}, events,
        program.EngineClock());
    const auto engine = program.MakeEngine(publisher);
    publisher.TellProblems([&engine](const tarvin::KelText& problem) { engine->Announce(problem); });
    const auto settings = tarvin::ReadServiceSettings(program.Place(), program.MachineName());
    if (settings.commsLog)
        engine->StartRollingCommsLog(*settings.commsLog, settings.commsLogSizeLimit);
    engine->Start();
    tarvin::WaitForStopRequest();
    engine->Stop();
    publisher.Finish();
    output.Add(tarvin::text::service::programEnd);
    // A reader that has stopped reading must not keep the process: the runtime would wait for it to flush the output.
    if (!output.Finish())
        std::_Exit(0);
    return 0;
}

// The exit code of the program. `words` are the words of the command line.
int RunAssignPort(const std::vector<tarvin::KelText>& words) {
    tarvin::SecureStandardStreams();
    const auto device = words.size() > 1 ? tarvin::ToPath(words[1]) : std::filesystem::path();
    const auto machineWords = words.begin() + (words.size() > 1 ? 2 : 1);
    const auto done = tarvin::AssignPort(device, tarvin::JoinWords({machineWords, words.end()}));
    if (!done) {
        std::fprintf(stderr, "tarvindl-service: %s\n", tarvin::ToUtf8(done.Reason().text).c_str());
        return 1;
    }
    std::printf("%s\n", tarvin::ToUtf8(*done).c_str());
    return 0;
}

}

int main(int argumentCount, char** arguments) {
    const auto words = tarvin::ProgramArguments(argumentCount, arguments);
    if (!words.empty() && words.front() == u"--assign-port")
        return RunAssignPort(words);
    const auto start = tarvin::Program::Begin(argumentCount, arguments, "tarvindl-service", usage);
    return start.program ? Serve(*start.program) : start.exitCode;
}
