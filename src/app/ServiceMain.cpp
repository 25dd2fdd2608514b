// tarvindl-service: the engine without a display, unattended. One process for one machine.

#include "app/ProgramStart.h"
#include "app/ServiceEvents.h"
#include "app/ServiceOutput.h"
#include "app/ServiceSettings.h"
#include "app/Start.h"
#include "app/StopRequest.h"

#include <cstdlib>

namespace {

constexpr char usage[] = "Usage: tarvindl-service [MACHINE NAME]\n"
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
                         "program in order.\n"
                         "\n"
                         "  --help     this text\n"
                         "  --version  the version\n";

int Serve(const tarvin::ProgramPaths& paths, const tarvin::KelText& commandLine) {
    const tarvin::KelText machineName = tarvin::Start::MachineName(commandLine);
    tarvin::PrepareStopRequests();
    tarvin::ServiceOutput output;
    tarvin::AppInterface app({tarvin::Start::MachineFolder(paths, machineName)},
                             [&output](tarvin::KelTextView note) { output.AddNote(note); });
    tarvin::Start::LoadDictionary(paths, commandLine, [&app](const tarvin::MessageBoxText& box) {
        app.Report({static_cast<std::int32_t>(tarvin::ReportLevel::Warning), {}, box.text, {}, 0});
    });
    app.ReadSuppressedMessages();
    tarvin::ServiceEvents events(output, app);
    const tarvin::Start start(paths, events);
    const auto engine = start.MakeEngine(machineName);
    engine->Create();
    const auto settings = tarvin::ReadServiceSettings(paths, engine->MachineName());
    if (settings.commsLog)
        engine->StartRollingCommsLog(*settings.commsLog, settings.commsLogSizeLimit);
    engine->StartMonitor();
    tarvin::WaitForStopRequest();
    engine->Terminate();
    output.Add(tarvin::text::service::programEnd);
    // Whoever does not read what is printed must not keep the process either, by what it has yet to flush.
    if (!output.Finish())
        std::_Exit(0);
    return 0;
}

}

int main(int argumentCount, char** arguments) {
    const auto start = tarvin::BeginProgram(argumentCount, arguments, "tarvindl-service", usage);
    return start ? Serve(start->paths, start->commandLine) : 0;
}
