#include "base/System.h"
#include "files/Installation.h"

#include <system_error>

namespace tarvin {

namespace {

std::optional<std::filesystem::path> UserDataFolder() {
    if (auto dataHome = FolderFromEnvironment("XDG_DATA_HOME"))
        return dataHome;
    const auto home = FolderFromEnvironment("HOME");
    return home ? std::optional(*home / ".local/share") : std::nullopt;
}

}

std::optional<std::filesystem::path> ProgramFolder() {
    std::error_code error;
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::nullopt : std::optional(executable.parent_path());
}

std::optional<std::filesystem::path> UserInstallation() {
    const auto data = UserDataFolder();
    return data ? std::optional(*data / "TarvinDL/2026") : std::nullopt;
}

std::optional<std::filesystem::path> SystemInstallation() {
    return "/var/lib/tarvindl/2026";
}

InstallationCandidates SystemInstallationCandidates() {
    InstallationCandidates candidates;
    candidates.chosen = PathFromEnvironment("TARVINDL_HOME");
    if (const auto program = ProgramFolder())
        candidates.folders.push_back(*program);
    if (const auto user = UserInstallation())
        candidates.folders.push_back(*user);
    candidates.folders.push_back(*SystemInstallation());
    return candidates;
}

}
