#pragma once
// The installation: where it is, and the folders that its KEL.INI names. Knows nothing of what is in those folders.
// Any thread that does not run beside a change of the environment.

#include <filesystem>
#include <optional>
#include <vector>

namespace tarvin {

// The folder that the running program's file is in; none if the system does not tell.
std::optional<std::filesystem::path> ProgramFolder();

// Where an installation may be.
struct InstallationCandidates {
    // Named by the user. Right or wrong, nothing else counts then.
    std::optional<std::filesystem::path> chosen;
    // The first that holds a readable KEL.INI is taken.
    std::vector<std::filesystem::path> folders;
};

// What the environment, the place of the executable and the system's conventions give.
InstallationCandidates SystemInstallationCandidates();

// The installation folder as an absolute path; none if there is no installation.
std::optional<std::filesystem::path> FindInstallation(const InstallationCandidates& candidates);
std::optional<std::filesystem::path> FindInstallation();

class ProgramPaths {
public:
    // None if KEL.INI in the installation cannot be read or has no section "PROGRAM PATHS".
    static std::optional<ProgramPaths> Read(const std::filesystem::path& installation);

    const std::filesystem::path& Installation() const { return installation; }
    // KEL.INI itself, which has sections of others too.
    std::filesystem::path PathsFile() const;
    // Need not exist.
    const std::filesystem::path& NcFilesFolder() const { return ncFilesFolder; }

private:
    std::filesystem::path installation;
    std::filesystem::path ncFilesFolder;
};

}
