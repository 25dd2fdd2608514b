#include "base/System.h"
#include "base/WindowsApi.h"
#include "files/Installation.h"

#include <string>

namespace tarvin {

namespace {

// One more than the longest path has.
constexpr DWORD bufferUnits = 32768;

std::optional<std::filesystem::path> InstallationBelow(const char* variable) {
    const auto data = FolderFromEnvironment(variable);
    return data ? std::optional(*data / "TarvinDL" / "2026") : std::nullopt;
}

}

std::optional<std::filesystem::path> ProgramFolder() {
    std::wstring path(bufferUnits, L'\0');
    const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), bufferUnits);
    if (length == 0 || length >= bufferUnits)
        return std::nullopt;
    path.resize(length);
    return std::filesystem::path(path).parent_path();
}

std::optional<std::filesystem::path> UserInstallation() {
    return InstallationBelow("LOCALAPPDATA");
}

std::optional<std::filesystem::path> SystemInstallation() {
    return InstallationBelow("ProgramData");
}

InstallationCandidates SystemInstallationCandidates() {
    InstallationCandidates candidates;
    candidates.chosen = PathFromEnvironment("TARVINDL_HOME");
    if (const auto program = ProgramFolder())
        candidates.folders.push_back(*program);
    for (const auto& folder : {UserInstallation(), SystemInstallation()}) {
        if (folder)
            candidates.folders.push_back(*folder);
    }
    return candidates;
}

}
