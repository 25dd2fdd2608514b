#include "app/Start.h"

#include "app/CommandLine.h"
#include "dictionary/TextHolder.h"
#include "files/FileNames.h"

#include <system_error>
#include <utility>

namespace tarvin {

std::optional<ProgramPaths> Start::FindPaths(KelText& reason) {
    const auto installation = FindInstallation();
    if (!installation) {
        reason = u"No installation of TarvinDL was found: no folder with a readable KEL.INI.";
        return std::nullopt;
    }
    auto paths = ProgramPaths::Read(*installation);
    if (!paths)
        reason = u"Unable to locate Program Paths in " + FromPath(*installation) +
                 u": KEL.INI there has no section PROGRAM PATHS.";
    return paths;
}

KelText Start::MachineName(KelTextView commandLine) {
    KelText name = MachineNameIn(commandLine);
    return name.empty() ? KelText(TarvinApp::defaultMachineName) : name;
}

void Start::LoadDictionary(const ProgramPaths& programPaths, const KelText& commandLine,
                           const std::function<void(const MessageBoxText&)>& reportFailure) {
    DictionaryRequest request;
    request.programFolder = programPaths.Installation();
    request.commandLine = commandLine;
    std::error_code ignored;
    const auto loaded = Dictionary().Load(request);
    if (!loaded && std::filesystem::exists(request.programFolder / request.fileName, ignored))
        reportFailure({loaded.Reason().text, Dictionary().Text(290), okOnly | iconExclamation});
}

std::filesystem::path Start::MachineFolder(const ProgramPaths& programPaths, KelTextView machineName) {
    return programPaths.Installation() / ToPath(FileNameFor(machineName));
}

Start::Start(const ProgramPaths& programPaths, DownloadWindow& downloadWindow)
    : paths(programPaths), portNames(paths.PathsFile()), window(downloadWindow) {}

std::unique_ptr<TarvinApp> Start::MakeEngine(KelText machineName) const {
    EngineSetup setup = {MakeSerialPort(portNames), clock, window, paths.Installation(),
                         FromPath(paths.NcFilesFolder())};
    return std::make_unique<TarvinApp>(std::move(setup), std::move(machineName));
}

}
