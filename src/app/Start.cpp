#include "app/Start.h"

#include "app/CommandLine.h"
#include "dictionary/TextHolder.h"
#include "files/FileNames.h"

#include <system_error>
#include <utility>

namespace tarvin {

std::optional<Installation> Start::FindPaths(KelText& reason) {
    const auto folder = FindInstallation();
    const auto installation = folder ? Installation::Read(*folder) : Result<Installation>(folder.Reason());
    if (!installation) {
        reason = installation.Reason().text + u".";
        return std::nullopt;
    }
    return *installation;
}

KelText Start::MachineName(KelTextView commandLine) {
    KelText name = MachineNameIn(commandLine);
    return name.empty() ? KelText(TarvinApp::defaultMachineName) : name;
}

void Start::LoadDictionary(const Installation& programPaths, const KelText& commandLine,
                           const std::function<void(const MessageBoxText&)>& reportFailure) {
    DictionaryRequest request;
    request.programFolder = programPaths.Folder();
    request.commandLine = commandLine;
    std::error_code ignored;
    const auto loaded = Dictionary().Load(request);
    if (!loaded && std::filesystem::exists(request.programFolder / request.fileName, ignored))
        reportFailure({loaded.Reason().text, Dictionary().Text(290), okOnly | iconExclamation});
}

std::filesystem::path Start::MachineFolder(const Installation& programPaths, KelTextView machineName) {
    return programPaths.Folder() / ToPath(FileNameFor(machineName));
}

Start::Start(const Installation& programPaths, DownloadWindow& downloadWindow)
    : paths(programPaths), portNames(paths.PathsFile()), window(downloadWindow) {}

std::unique_ptr<TarvinApp> Start::MakeEngine(KelText machineName) const {
    EngineSetup setup = {MakeSerialPort(portNames), clock, window, paths.Folder(), FromPath(paths.NcFilesFolder())};
    return std::make_unique<TarvinApp>(std::move(setup), std::move(machineName));
}

}
