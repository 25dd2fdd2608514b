#include "app/Program.h"

#include "app/CommandLine.h"
#include "base/System.h"
#include "base/Version.h"
#include "dictionary/TextHolder.h"
#include "files/FileNames.h"
#include "protocol/TarvinApp.h"

#include <cstdio>
#include <system_error>
#include <utility>

namespace tarvin {

namespace {

KelText MachineNameOrDefault(KelTextView commandLine) {
    KelText name = MachineNameIn(commandLine);
    return name.empty() ? KelText(TarvinApp::defaultMachineName) : name;
}

}

Result<ProgramPaths> FindProgramPaths() {
    const auto installation = FindInstallation();
    if (!installation)
        return Error{u"No installation of TarvinDL was found: no folder with a readable KEL.INI."};
    auto paths = ProgramPaths::Read(*installation);
    if (!paths) {
        return Error{u"Unable to locate Program Paths in " + FromPath(*installation) +
                     u": KEL.INI there has no section PROGRAM PATHS."};
    }
    return *std::move(paths);
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
    auto paths = FindProgramPaths();
    if (!paths) {
        std::fprintf(stderr, "%s: %s\n", programName, ToUtf8(paths.Reason().text).c_str());
        return std::nullopt;
    }
    return std::optional<Program>(std::in_place, std::move(*paths), std::move(commandLine));
}

Program::Program(ProgramPaths paths, KelText commandLine)
    : paths(std::move(paths)),
      commandLine(std::move(commandLine)),
      machineName(MachineNameOrDefault(this->commandLine)),
      portNames(this->paths.PathsFile()) {}

std::filesystem::path Program::MachineFolder() const {
    return paths.Installation() / ToPath(FileNameFor(machineName));
}

Result<> Program::LoadDictionary() const {
    DictionaryRequest request;
    request.programFolder = paths.Installation();
    request.commandLine = commandLine;
    auto loaded = Dictionary().Load(request);
    std::error_code ignored;
    const bool isThere = std::filesystem::exists(request.programFolder / request.fileName, ignored);
    return isThere ? loaded : Result<>();
}

std::unique_ptr<DownloadApp> Program::MakeEngine(EngineEvents& events) const {
    const auto makeProtocol = [](const ProtocolParts& parts) { return std::make_unique<TarvinApp>(parts); };
    return std::make_unique<DownloadApp>(EngineSetup{MakeSerialPort(portNames), clock, events, makeProtocol,
                                                     paths.Installation(), FromPath(paths.NcFilesFolder()),
                                                     TarvinApp::FirstSettings()},
                                         machineName);
}

}
