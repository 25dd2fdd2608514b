#include "app/Start.h"

#include "app/CommandLine.h"
#include "base/Messages.h"
#include "dictionary/TextHolder.h"
#include "files/FileNames.h"

#include <system_error>
#include <utility>

namespace tarvin {

std::optional<ProgramPaths> Start::FindPaths(KelText& reason) {
    const auto installation = FindInstallation();
    if (!installation) {
        reason = text::start::noInstallation;
        return std::nullopt;
    }
    auto paths = ProgramPaths::Read(*installation);
    if (!paths)
        reason = Filled(text::start::noProgramPaths, {FromPath(*installation)});
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
        reportFailure(
            {loaded.Reason().text, Dictionary().Text(text::dictionary::problem.id), okOnly | iconExclamation});
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
