#include "setup/MachineSetup.h"

#include "base/SetupMessages.h"
#include "setup/AssignPort.h"
#include "setup/InstallationFiles.h"

#include <system_error>
#include <utility>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

Result<> MakeFolders(const std::vector<fs::path>& folders, SetupReport& report) {
    for (const fs::path& folder : folders) {
        std::error_code error;
        if (fs::exists(folder, error))
            continue;
        fs::create_directories(folder, error);
        if (error)
            return Error{Filled(text::setup::cannotMake, {FromPath(folder), FromUtf8(error.message())})};
        GiveToOwnerOfFolder(folder);
        report.push_back(Filled(text::setup::folderMade, {FromPath(folder)}));
    }
    return {};
}

}

Result<MachineOutcome> SetUpMachine(const Installation& installation, const MachineWish& wish) {
    SetupReport report;
    std::vector<NamedValue> settings = wish.settings;
    if (const auto made = MakeFolders(wish.folders, report); !made)
        return made.Reason();
    if (wish.port) {
        const auto name = PortNameFor(installation.PathsFile(), *wish.port);
        if (!name)
            return name.Reason();
        if (*name != *wish.port)
            report.push_back(Filled(text::setup::portNamed, {*wish.port, *name}));
        settings.push_back({u"port", *name});
    }
    const bool isNew = !IsMachine(installation, wish.name);
    const auto changed = ChangeSettings(installation, wish.name, settings);
    if (!changed)
        return changed.Reason();
    const KelTextView form = isNew      ? text::setup::machineMade
                             : *changed ? text::setup::machineChanged
                                        : text::setup::machineThere;
    report.push_back(Filled(form, {wish.name, FromPath(StoreOf(installation, wish.name).FilePath())}));
    return MachineOutcome{std::move(report), *changed};
}

}
