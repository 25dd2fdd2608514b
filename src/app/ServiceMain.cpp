// tarvindl-service: the engine without a display, unattended. One process for one machine.

#include "app/AssignPort.h"
#include "app/CommandLine.h"
#include "app/ProgramStart.h"
#include "app/ServiceApp.h"
#include "app/ServiceOutput.h"
#include "app/ServiceSettings.h"
#include "app/ServiceWindow.h"
#include "app/Start.h"
#include "app/StopRequest.h"
#include "base/System.h"

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
                         "program in order.\n"
                         "\n"
                         "--assign-port gives DEVICE, such as /dev/ttyUSB0, a port name in KEL.INI and writes the\n"
                         "machine's settings with that port if there are none. If there is no installation, it\n"
                         "makes one. It fails, and changes nothing, if the settings name a port of another device.\n"
                         "\n"
                         "  --help     this text\n"
                         "  --version  the version\n";

int Serve(const tarvin::Installation& paths, const tarvin::KelText& commandLine) {
    const tarvin::KelText machineName = tarvin::Start::MachineName(commandLine);
    tarvin::PrepareStopRequests();
    tarvin::ServiceOutput output;
    tarvin::ServiceApp app({tarvin::Start::MachineFolder(paths, machineName)}, output);
    tarvin::Start::LoadDictionary(paths, commandLine, [&app](const tarvin::MessageBoxText& box) {
        app.Report({static_cast<std::int32_t>(tarvin::ReportLevel::Warning), {}, box.text, {}, 0});
    });
    app.ReadSuppressedMessages();
    tarvin::ServiceWindow window(output, app);
    const tarvin::Start start(paths, window);
    const auto engine = start.MakeEngine(machineName);
    engine->Create();
    const auto settings = tarvin::ReadServiceSettings(paths, engine->MachineName());
    if (settings.commsLog)
        engine->StartRollingCommsLog(*settings.commsLog, settings.commsLogSizeLimit);
    engine->StartMonitor();
    tarvin::WaitForStopRequest();
    engine->Terminate();
    output.Add(u"Application Terminated");
    // Whoever does not read what is printed must not keep the process either, by what it has yet to flush.
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
    const auto start = tarvin::BeginProgram(argumentCount, arguments, "tarvindl-service", usage);
    return start ? Serve(start->paths, start->commandLine) : 0;
}
