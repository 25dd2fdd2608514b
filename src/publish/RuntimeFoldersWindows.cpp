#include "base/PublishMessages.h"
#include "base/System.h"
#include "base/WindowsApi.h"
#include "publish/RuntimeFolders.h"

#include <optional>
#include <string>
#include <system_error>

namespace tarvin {

namespace {

// One more than the longest path or environment variable has.
constexpr DWORD bufferUnits = 32768;

// An empty variable counts as unset. A relative path would mean another folder for each program.
std::optional<std::filesystem::path> FromEnvironment(const wchar_t* name) {
    std::wstring value(bufferUnits, L'\0');
    const DWORD length = ::GetEnvironmentVariableW(name, value.data(), bufferUnits);
    if (length == 0 || length >= bufferUnits)
        return std::nullopt;
    value.resize(length);
    std::filesystem::path path(value);
    return path.is_absolute() ? std::optional(std::move(path)) : std::nullopt;
}

std::optional<std::filesystem::path> Below(const wchar_t* variable) {
    const auto data = FromEnvironment(variable);
    return data ? std::optional(*data / "TarvinDL" / "run") : std::nullopt;
}

// Windows keeps the right to make a file in access control lists. Opening the folder for that asks them.
bool MayWrite(const std::filesystem::path& folder) {
    const HANDLE opened =
        ::CreateFileW(folder.c_str(), FILE_ADD_FILE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return false;
    ::CloseHandle(opened);
    return true;
}

Result<std::filesystem::path> Made(const std::filesystem::path& folder) {
    std::error_code ignored;
    std::filesystem::create_directory(folder.parent_path(), ignored);
    if (!::CreateDirectoryW(folder.c_str(), nullptr) && ::GetLastError() != ERROR_ALREADY_EXISTS)
        return Error{FromPath(folder) + u": " + LastSystemError().text};
    return folder;
}

}

Result<std::filesystem::path> RuntimeFolderToWrite() {
    if (const auto chosen = FromEnvironment(L"TARVINDL_RUNTIME"))
        return Made(*chosen);
    if (const auto system = Below(L"ProgramData"); system && MayWrite(*system))
        return *system;
    if (const auto user = Below(L"LOCALAPPDATA"))
        return Made(*user);
    return Error{text::publish::noFolder};
}

std::vector<std::filesystem::path> RuntimeFoldersToRead() {
    std::vector<std::filesystem::path> folders;
    for (auto& folder : {FromEnvironment(L"TARVINDL_RUNTIME"), Below(L"ProgramData"), Below(L"LOCALAPPDATA")}) {
        if (folder)
            folders.push_back(*folder);
    }
    return folders;
}

}
