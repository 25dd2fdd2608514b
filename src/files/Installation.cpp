#include "files/ProgramPaths.h"

#include "files/FileNames.h"
#include "files/NativeFile.h"
#include "files/Profile.h"

#include <algorithm>
#include <system_error>

namespace tarvin {

namespace {

constexpr const char* pathsFileName = "KEL.INI";
constexpr KelTextView pathsSection = u"PROGRAM PATHS";
// The longest path that any of the systems takes.
constexpr std::size_t maximumPathUnits = 32767;

bool HoldsInstallation(const std::filesystem::path& folder) {
    NativeFile file;
    return file.Open(folder / pathsFileName, NativeFile::Access::Read);
}

// A KEL.INI written on Windows must name the same folder elsewhere. A full path is left alone: it belongs to the system
// that it was written for, where a backslash may be part of a name.
std::filesystem::path BelowInstallation(const std::filesystem::path& installation, KelText folder) {
    if (ToPath(folder).is_absolute())
        return ToPath(folder);
    return installation / ToPath(WithOwnSeparators(std::move(folder)));
}

}

std::optional<std::filesystem::path> FindInstallation(const InstallationCandidates& candidates) {
    const auto folders = candidates.chosen ? std::vector{*candidates.chosen} : candidates.folders;
    const auto found = std::find_if(folders.begin(), folders.end(), HoldsInstallation);
    if (found == folders.end())
        return std::nullopt;
    // The working folder may change later.
    std::error_code error;
    const auto absolute = std::filesystem::absolute(*found, error);
    return error ? std::nullopt : std::optional(absolute);
}

std::optional<std::filesystem::path> FindInstallation() {
    return FindInstallation(SystemInstallationCandidates());
}

std::filesystem::path ProgramPaths::PathsFile() const {
    return installation / pathsFileName;
}

std::optional<ProgramPaths> ProgramPaths::Read(const std::filesystem::path& installation) {
    const auto profile = Profile::Read(installation / pathsFileName);
    if (!profile || !profile->HasSection(pathsSection))
        return std::nullopt;
    KelText ncFiles = profile->Text(pathsSection, u"NC Files", u"", maximumPathUnits);
    if (ncFiles.empty())
        ncFiles = u"NC Files";
    ProgramPaths paths;
    paths.installation = installation;
    paths.ncFilesFolder = BelowInstallation(installation, ncFiles);
    return paths;
}

}
