#include "app/Program.h"

#include "app/CommandLine.h"
#include "base/System.h"
#include "base/Version.h"
#include "dictionary/TextHolder.h"
#include "engine/EngineSetup.h"
#include "files/FileNames.h"
#include "protocol/TarvinApp.h"

#include <cstdio>
#include <system_error>
#include <utility>

namespace tarvin {

KelText MachineNameOf(KelTextView commandLine) {
    KelText name = MachineNameIn(commandLine);
    return name.empty() ? KelText(TarvinApp::defaultMachineName) : name;
}

Result<Installation> FindProgramInstallation() {
    const auto folder = FindInstallation();
    if (!folder)
        return folder.Reason();
    return Installation::Read(*folder);
}

std::optional<Program> Program::Begin(int argumentCount, const char* const* arguments, const char* programName,
                                      const char* usage) {
    SecureStandardStreams();
    KelText commandLine = JoinWords(ProgramArguments(argumentCount, arguments));
    if (commandLine == u"--help") {
        std::fputs(usage, stdout);
        return std::nullopt;
    }
    if (commandLine == u"--version") {
        std::printf("%s %s\n", programName, programVersion);
        return std::nullopt;
    }
    auto installation = FindProgramInstallation();
    if (!installation) {
        std::fprintf(stderr, "%s: %s.\n", programName, ToUtf8(installation.Reason().text).c_str());
        return std::nullopt;
    }
    return std::optional<Program>(std::in_place, std::move(*installation), std::move(commandLine));
}

Program::Program(Installation installation, KelText commandLine)
    : installation(std::move(installation)),
      commandLine(std::move(commandLine)),
      machineName(MachineNameOf(this->commandLine)),
      portNames(this->installation.PathsFile()) {}

std::filesystem::path Program::MachineFolder() const {
    return installation.Folder() / ToPath(FileNameFor(machineName));
}

Result<> Program::LoadDictionary() const {
    DictionaryRequest request;
    request.programFolder = installation.Folder();
    request.commandLine = commandLine;
    auto loaded = Dictionary().Load(request);
    std::error_code ignored;
    const bool isThere = std::filesystem::exists(request.programFolder / request.fileName, ignored);
    return isThere ? loaded : Result<>();
}

std::unique_ptr<DownloadApp> Program::MakeEngine(EngineEvents& events) const {
    const auto makeProtocol = [](const ProtocolParts& parts) { return std::make_unique<TarvinApp>(parts); };
    return std::make_unique<DownloadApp>(EngineSetup{MakeSerialPort(portNames), clock, events, makeProtocol,
                                                     installation.Folder(), FromPath(installation.NcFilesFolder()),
                                                     TarvinApp::FirstSettings()},
                                         machineName);
}

}
