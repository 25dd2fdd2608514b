#include "base/WindowsApi.h"
#include "files/Installation.h"

#include <string>

namespace tarvin {

namespace {

// One more than the longest path or environment variable has.
constexpr DWORD bufferUnits = 32768;

// An empty variable counts as unset.
std::optional<std::filesystem::path> FromEnvironment(const wchar_t* name) {
    std::wstring value(bufferUnits, L'\0');
    const DWORD length = ::GetEnvironmentVariableW(name, value.data(), bufferUnits);
    if (length == 0 || length >= bufferUnits)
        return std::nullopt;
    value.resize(length);
    return value;
}

std::optional<std::filesystem::path> InstallationBelow(const wchar_t* variable) {
    const auto data = FromEnvironment(variable);
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
    return InstallationBelow(L"LOCALAPPDATA");
}

std::optional<std::filesystem::path> SystemInstallation() {
    return InstallationBelow(L"ProgramData");
}

InstallationCandidates SystemInstallationCandidates() {
    InstallationCandidates candidates;
    candidates.chosen = FromEnvironment(L"TARVINDL_HOME");
    if (const auto program = ProgramFolder())
        candidates.folders.push_back(*program);
    for (const auto& folder : {UserInstallation(), SystemInstallation()}) {
        if (folder)
            candidates.folders.push_back(*folder);
    }
    return candidates;
}

}
