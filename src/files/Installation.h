#pragma once
// The installation: its folder, and the folders that its KEL.INI names. Any thread, as long as no other thread changes
// the environment.

#include "base/Result.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace tarvin {

class Profile;

// The folder of the running program's file. None if the system does not tell it.
std::optional<std::filesystem::path> ProgramFolder();

// The folders that may hold an installation.
struct InstallationCandidates {
    // The user's choice. With a choice no other folder is tried, even if this one holds no installation.
    std::optional<std::filesystem::path> chosen;
    // The first of these with a readable KEL.INI is the installation, else the first with one that cannot be read.
    std::vector<std::filesystem::path> folders;
};

// The candidates by the environment, the program's folder and the conventions of the system.
InstallationCandidates SystemInstallationCandidates();

// The folder of the user's own installation, whether or not there is one. None if the environment names no such place.
std::optional<std::filesystem::path> UserInstallation();

// The folder of the installation that all users and services share, whether or not there is one.
std::optional<std::filesystem::path> SystemInstallation();

// The installation folder as an absolute path. Fails if no candidate has a KEL.INI. With one that cannot be read, the
// folder is an installation that is corrupt: Installation::Read says why.
Result<std::filesystem::path> FindInstallation(const InstallationCandidates& candidates);
Result<std::filesystem::path> FindInstallation();

class Installation {
public:
    // Fails if KEL.INI in `folder` cannot be read or has no section "PROGRAM PATHS".
    static Result<Installation> Read(const std::filesystem::path& folder);
    // The installation in `folder` if its KEL.INI were `paths`. Does not access the disk. Fails like Read.
    static Result<Installation> FromPaths(const std::filesystem::path& folder, const Profile& paths);

    const std::filesystem::path& Folder() const { return folder; }
    // KEL.INI. It has further sections, which other parts of the program read.
    std::filesystem::path PathsFile() const;
    // May be missing on the disk.
    const std::filesystem::path& NcFilesFolder() const { return ncFilesFolder; }

    // The values of the section "LINKED FOLDERS": links in a folder for NC files may lead to files below these folders.
    const std::vector<std::filesystem::path>& LinkedFolders() const { return linkedFolders; }

private:
    Installation() = default;

    std::filesystem::path folder;
    std::filesystem::path ncFilesFolder;
    std::vector<std::filesystem::path> linkedFolders;
};

}
