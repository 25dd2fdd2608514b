#include "files/Installation.h"

#include "base/Messages.h"
#include "files/FileNames.h"
#include "files/NativeFile.h"
#include "files/Profile.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace tarvin {

namespace {

constexpr const char* pathsFileName = "KEL.INI";
constexpr KelTextView pathsSection = u"PROGRAM PATHS";
constexpr KelTextView linkedFoldersSection = u"LINKED FOLDERS";
// The longest path that any of the systems takes.
constexpr std::size_t maximumPathUnits = 32767;

bool HoldsInstallation(const std::filesystem::path& folder) {
    NativeFile file;
    return static_cast<bool>(file.Open(folder / pathsFileName, NativeFile::Access::Read));
}

bool HoldsPathsFile(const std::filesystem::path& folder) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(folder / pathsFileName, ignored));
}

// A KEL.INI written on Windows names the same folder on every system, so separators are replaced. A full path belongs
// to the system that it was written for, where a backslash may be part of a name. It stays as it is.
std::filesystem::path BelowInstallation(const std::filesystem::path& installation, KelText folder) {
    if (ToPath(folder).is_absolute())
        return ToPath(folder);
    return installation / ToPath(WithOwnSeparators(std::move(folder)));
}

}

Result<std::filesystem::path> FindInstallation(const InstallationCandidates& candidates) {
    const Error notFound = {text::start::noInstallation};
    const auto folders = candidates.chosen ? std::vector{*candidates.chosen} : candidates.folders;
    auto found = std::find_if(folders.begin(), folders.end(), HoldsInstallation);
    if (found == folders.end())
        found = std::find_if(folders.begin(), folders.end(), HoldsPathsFile);
    if (found == folders.end())
        return notFound;
    // Absolute, because the working folder may change later.
    std::error_code error;
    auto absolute = std::filesystem::absolute(*found, error);
    if (error)
        return notFound;
    return absolute;
}

Result<std::filesystem::path> FindInstallation() {
    return FindInstallation(SystemInstallationCandidates());
}

std::filesystem::path Installation::PathsFile() const {
    return folder / pathsFileName;
}

Result<Installation> Installation::Read(const std::filesystem::path& folder) {
    const auto profile = Profile::Read(folder / pathsFileName);
    if (!profile)
        return Error{Filled(text::start::unreadablePaths, {FromPath(folder), profile.Reason().text})};
    return FromPaths(folder, *profile);
}

Result<Installation> Installation::FromPaths(const std::filesystem::path& folder, const Profile& paths) {
    if (!paths.HasSection(pathsSection))
        return Error{Filled(text::start::noProgramPaths, {FromPath(folder)})};
    KelText ncFiles = paths.Text(pathsSection, u"NC Files", u"", maximumPathUnits);
    if (ncFiles.empty())
        ncFiles = u"NC Files";
    Installation installation;
    installation.folder = folder;
    installation.ncFilesFolder = BelowInstallation(folder, std::move(ncFiles));
    for (const Profile::Entry& entry : paths.Entries(linkedFoldersSection)) {
        if (!entry.value.empty())
            installation.linkedFolders.push_back(BelowInstallation(folder, entry.value));
    }
    return installation;
}

}
