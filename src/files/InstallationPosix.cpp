#include "files/Installation.h"

#include <cstdlib>
#include <system_error>

namespace tarvin {

namespace {

// An empty variable counts as unset.
std::optional<std::filesystem::path> FromEnvironment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr || *value == '\0' ? std::nullopt : std::optional<std::filesystem::path>(value);
}

// A relative path in these variables is ignored. It would mean another folder each time the program is started.
std::optional<std::filesystem::path> UserDataFolder() {
    const auto dataHome = FromEnvironment("XDG_DATA_HOME");
    if (dataHome && dataHome->is_absolute())
        return dataHome;
    const auto home = FromEnvironment("HOME");
    if (home && home->is_absolute())
        return *home / ".local/share";
    return std::nullopt;
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
    candidates.chosen = FromEnvironment("TARVINDL_HOME");
    if (const auto program = ProgramFolder())
        candidates.folders.push_back(*program);
    if (const auto user = UserInstallation())
        candidates.folders.push_back(*user);
    candidates.folders.push_back(*SystemInstallation());
    return candidates;
}

}
