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

}

std::optional<std::filesystem::path> ProgramFolder() {
    std::wstring path(bufferUnits, L'\0');
    const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), bufferUnits);
    if (length == 0 || length >= bufferUnits)
        return std::nullopt;
    path.resize(length);
    return std::filesystem::path(path).parent_path();
}

InstallationCandidates SystemInstallationCandidates() {
    InstallationCandidates candidates;
    candidates.chosen = FromEnvironment(L"TARVINDL_HOME");
    if (const auto program = ProgramFolder())
        candidates.folders.push_back(*program);
    for (const wchar_t* name : {L"LOCALAPPDATA", L"ProgramData"}) {
        if (const auto data = FromEnvironment(name))
            candidates.folders.push_back(*data / "TarvinDL" / "2026");
    }
    return candidates;
}

}
