#include "setup/MachineSetup.h"

#include "base/SetupMessages.h"
#include "protocol/TarvinApp.h"
#include "setup/AssignPort.h"
#include "setup/FolderAccess.h"
#include "setup/InstallationFiles.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

// In bytes. With what is added to it, it is still the name of a file.
constexpr std::size_t longestMachineName = 200;

// The folders that one set-up has made. Removes them again unless they are kept.
class MadeFolders {
public:
    MadeFolders() = default;
    ~MadeFolders() {
        std::error_code ignored;
        for (auto folder = made.rbegin(); folder != made.rend(); ++folder)
            fs::remove(*folder, ignored);
    }
    MadeFolders(const MadeFolders&) = delete;
    MadeFolders& operator=(const MadeFolders&) = delete;

    Result<> Make(const fs::path& folder) {
        std::error_code error;
        if (folder.empty() || fs::is_directory(folder, error))
            return {};
        if (folder.has_relative_path()) {
            if (auto above = Make(folder.parent_path()); !above)
                return above;
        }
        if (fs::create_directory(folder, error))
            made.push_back(folder);
        return error ? Result<>(Error{Filled(text::setup::cannotMake, {FromPath(folder), FromUtf8(error.message())})})
                     : Result<>();
    }

    void Keep() { made.clear(); }

private:
    std::vector<fs::path> made;
};

Result<> MakeFolders(const fs::path& installation, const std::vector<fs::path>& folders, MadeFolders& made,
                     SetupReport& report) {
    for (const fs::path& each : folders) {
        // Without the separator at its end, which would count as a folder of its own.
        const fs::path folder = (each / "x").lexically_normal().parent_path();
        std::error_code error;
        if (fs::exists(folder, error))
            continue;
        if (const auto done = made.Make(folder); !done)
            return done;
        GiveFolderToOwnerOf(installation, folder);
        report.push_back(Filled(text::setup::folderMade, {FromPath(folder)}));
    }
    return {};
}

KelText PortOf(const Installation& installation, const KelText& machineName) {
    return StoreOf(installation, machineName).Load(TarvinApp::FirstSettings()).settings.port;
}

// Two programs cannot serve one port, but two machines may take turns at it.
void TellSharedPort(const Installation& installation, const KelText& machineName, SetupReport& report) {
    const KelText port = PortOf(installation, machineName);
    for (const KelText& other : MachinesOf(installation.Folder())) {
        if (other != machineName && EqualIgnoringCase(PortOf(installation, other), port))
            report.push_back(Filled(text::setup::portShared, {other, port}));
    }
}

bool IsPort(const NamedValue& setting) {
    return EqualIgnoringCase(setting.name, u"port");
}

}

Result<> CheckMachineName(KelTextView name) {
    // The command lines of the programs would not take it for a name.
    const bool isOption = name.starts_with(u"--") || name.find(u" --") != name.npos || name.starts_with(u"/l=");
    const bool isPlain = !name.empty() && Trimmed(name) == name && !isOption &&
                         ToUtf8(name).size() <= longestMachineName && std::ranges::none_of(name, IsControlCharacter);
    return isPlain ? Result<>() : Error{Filled(text::setup::badName, {name})};
}

Result<> TryMachine(const Installation& installation, const MachineWish& wish) {
    if (const auto named = CheckMachineName(wish.name); !named)
        return named;
    std::vector<NamedValue> settings = wish.settings;
    if (wish.port) {
        const auto name = PlannedPortName(installation.PathsFile(), *wish.port);
        if (!name)
            return name.Reason();
        settings.push_back({u"port", *name});
    }
    if (const auto tried = TrySettings(installation, wish.name, settings, wish.folders); !tried)
        return tried;
    for (const fs::path& folder : wish.folders) {
        std::error_code ignored;
        const auto problem = fs::is_directory(folder, ignored) ? std::nullopt : TryMakingFolder(folder);
        if (problem)
            return Error{Filled(text::setup::cannotMake, {FromPath(folder), problem->text})};
    }
    return {};
}

Result<MachineOutcome> SetUpMachine(const Installation& installation, const MachineWish& wish) {
    if (const auto tried = TryMachine(installation, wish); !tried)
        return tried.Reason();
    SetupReport report;
    MadeFolders folders;
    if (const auto made = MakeFolders(installation.Folder(), wish.folders, folders, report); !made)
        return made.Reason();
    std::vector<NamedValue> settings = wish.settings;
    if (wish.port)
        settings.push_back({u"port", *wish.port});
    for (NamedValue& each : settings) {
        if (!IsPort(each))
            continue;
        const auto name = PortNameFor(installation.PathsFile(), each.value);
        if (!name)
            return name.Reason();
        if (*name != each.value)
            report.push_back(Filled(text::setup::portNamed, {each.value, *name}));
        each.value = *name;
    }
    const bool isNew = !IsMachine(installation, wish.name);
    const auto changed = ChangeSettings(installation, wish.name, settings);
    if (!changed)
        return changed.Reason();
    folders.Keep();
    const KelTextView form = isNew      ? text::setup::machineMade
                             : *changed ? text::setup::machineChanged
                                        : text::setup::machineThere;
    report.push_back(Filled(form, {wish.name, FromPath(StoreOf(installation, wish.name).FilePath())}));
    TellSharedPort(installation, wish.name, report);
    return MachineOutcome{std::move(report), *changed};
}

}
