#include "setup/InstallationSetup.h"

#include "base/SetupMessages.h"
#include "files/NativeFile.h"
#include "files/Profile.h"
#include "setup/FolderAccess.h"
#include "setup/InstallationFiles.h"

#include <algorithm>
#include <system_error>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

constexpr const char* freshPathsFile = "[PROGRAM PATHS]\r\nNC Files=NC Files\r\n[PORTS]\r\n";

bool Exists(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

Error NotMade(const fs::path& path, KelTextView reason) {
    return {Filled(text::setup::cannotMake, {FromPath(path), reason})};
}

// A link whose file has gone leads nowhere, and is made anew.
Result<> ProvideData(const fs::path& folder, const char* name, SetupReport& report) {
    const fs::path target = folder / name;
    std::error_code error;
    if (fs::exists(target, error))
        return {};
    const fs::path shared = SharedFile(name);
    if (shared.empty()) {
        report.push_back(Filled(text::setup::dataMissing, {FromUtf8(name)}));
        return {};
    }
    if (Exists(target))
        fs::remove(target, error);
    if (const auto made = LinkData(shared, target); !made)
        return NotMade(target, made.Reason().text);
    return {};
}

Result<> MakeFolder(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    return error ? NotMade(folder, FromUtf8(error.message())) : Result<>();
}

Result<> MakePathsFile(const fs::path& folder) {
    if (const auto made = MakeFolder(folder / "NC Files"); !made)
        return made;
    const auto written = ReplaceWholeFile(folder / "KEL.INI", freshPathsFile);
    return written ? Result<>() : NotMade(folder / "KEL.INI", written.Reason().text);
}

}

Result<fs::path> FolderFor(const InstallationWish& wish) {
    std::error_code error;
    if (!wish.folder.empty())
        return fs::absolute(wish.folder, error).lexically_normal();
    if (wish.isSystem) {
        const auto system = SystemInstallation();
        return system ? Result<fs::path>(*system) : Error{text::setup::noSystemPlace};
    }
    if (const auto found = FindInstallation())
        return *found;
    const auto chosen = SystemInstallationCandidates().chosen;
    const auto folder = chosen ? chosen : UserInstallation();
    return folder ? Result<fs::path>(*folder) : Error{text::assignPort::noHome};
}

fs::path SharedFile(const char* name) {
    const auto program = ProgramFolder();
    std::error_code ignored;
    for (const char* folder : {"../share/tarvindl", "../share", "."}) {
        const fs::path file = program ? (*program / folder / name).lexically_normal() : fs::path();
        if (program && fs::is_regular_file(file, ignored))
            return file;
    }
    return {};
}

std::vector<KelText> MachinesOf(const fs::path& folder) {
    std::vector<KelText> names;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(folder, ignored)) {
        const fs::path& file = entry.path();
        const bool isSettings = EqualIgnoringCase(FromPath(file.extension()), u".INI") &&
                                !EqualIgnoringCase(FromPath(file.filename()), u"KEL.INI");
        if (isSettings && entry.is_regular_file(ignored))
            names.push_back(FromPath(file.stem()));
    }
    std::ranges::sort(names);
    return names;
}

Result<Installation> PlannedInstallation(const fs::path& folder) {
    if (Exists(folder / "KEL.INI"))
        return Installation::Read(folder);
    if (const auto problem = TryMakingFolder(folder))
        return NotMade(folder, problem->text);
    return Installation::FromPaths(folder, Profile(freshPathsFile));
}

Result<SetupReport> MakeInstallation(const fs::path& folder) {
    SetupReport report;
    const bool isNew = !Exists(folder / "KEL.INI");
    if (isNew) {
        if (const auto made = MakePathsFile(folder); !made)
            return made.Reason();
    }
    // A KEL.INI that no program can use is not replaced: it may hold the ports of all machines.
    if (const auto installation = Installation::Read(folder); !installation)
        return installation.Reason();
    report.push_back(
        Filled(isNew ? text::setup::installationMade : text::setup::installationThere, {FromPath(folder)}));
    for (const char* name : {"diction.ary", "comshelp.htb"}) {
        if (const auto provided = ProvideData(folder, name, report); !provided)
            return provided.Reason();
    }
    if (isNew)
        GiveToService(folder);
    return report;
}

}
