#include "app/ServiceCommands.h"

#include "app/CommandLine.h"
#include "app/Program.h"
#include "app/ServiceControl.h"
#include "base/Messages.h"
#include "base/ServiceMessages.h"
#include "settings/SettingsStore.h"

namespace tarvin {

namespace {

bool IsBelow(const std::filesystem::path& path, const std::filesystem::path& folder) {
    const auto relative = path.lexically_normal().lexically_relative(folder.lexically_normal());
    return !relative.empty() && *relative.begin() != "..";
}

// A line for each folder of NC files outside the installation. The owner of such a folder gives the account its rights.
KelText FolderAdvice(const Installation& installation, const ManagedService& service) {
    DownloadSettings settings;
    (void)SettingsStore(installation.Folder(), service.machineName, FromPath(installation.NcFilesFolder()))
        .LoadSettings(settings);
    KelText advice;
    KelText told;
    for (const KelText& folder : {settings.uploadPath, settings.downloadPath}) {
        if (folder.empty() || folder == told || IsBelow(ToPath(folder), installation.Folder()))
            continue;
        advice += u"\n" + Filled(text::serviceManager::needsRights, {AccountOf(service), folder});
        told = folder;
    }
    return advice;
}

// `words` are those after the option.
Result<KelText> Install(std::vector<KelText> words) {
    ManagedService service;
    std::optional<KelText> folder;
    while (!words.empty() && (words.front() == u"--account" || words.front() == u"--installation")) {
        if (words.size() < 2)
            return Error{Filled(text::serviceManager::valueNeeded, {words.front()})};
        if (words.front() == u"--account")
            service.account = words[1];
        else
            folder = words[1];
        words.erase(words.begin(), words.begin() + 2);
    }
    // The service starts in a folder of the system's, where a relative path would lead elsewhere.
    const auto installation =
        folder ? Installation::Read(std::filesystem::absolute(ToPath(*folder))) : FindProgramInstallation();
    if (!installation)
        return installation.Reason();
    service.installation = installation->Folder();
    service.commandLine = JoinWords(words);
    service.machineName = MachineNameOf(service.commandLine);
    auto told = InstallService(service);
    if (told)
        *told += FolderAdvice(*installation, service);
    return told;
}

Result<KelText> Act(const std::vector<KelText>& words) {
    const KelText action = words.empty() ? KelText() : words.front();
    if (action == u"start")
        return ActOnServices(ServiceAction::Start);
    if (action == u"stop")
        return ActOnServices(ServiceAction::Stop);
    if (action == u"remove")
        return ActOnServices(ServiceAction::Remove);
    return Error{text::serviceManager::unknownAction};
}

}

std::optional<Result<KelText>> RunServiceCommand(const std::vector<KelText>& words) {
    const KelText option = words.empty() ? KelText() : words.front();
    if (option != u"--install-service" && option != u"--remove-service" && option != u"--services")
        return std::nullopt;
    if (!HasServiceManager())
        return Error{text::serviceManager::notHere};
    const std::vector<KelText> rest(words.begin() + 1, words.end());
    return option == u"--install-service"  ? Install(rest)
           : option == u"--remove-service" ? RemoveService(MachineNameOf(JoinWords(rest)))
                                           : Act(rest);
}

}
