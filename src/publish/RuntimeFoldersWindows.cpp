#include "base/PublishMessages.h"
#include "base/System.h"
#include "base/WindowsApi.h"
#include "publish/RuntimeFolders.h"

#include <optional>
#include <system_error>

namespace tarvin {

namespace {

std::optional<std::filesystem::path> Below(const char* variable) {
    const auto data = FolderFromEnvironment(variable);
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
    if (const auto chosen = FolderFromEnvironment("TARVINDL_RUNTIME"))
        return Made(*chosen);
    if (const auto system = Below("ProgramData"); system && MayWrite(*system))
        return *system;
    if (const auto user = Below("LOCALAPPDATA"))
        return Made(*user);
    return Error{text::publish::noFolder};
}

std::vector<std::filesystem::path> RuntimeFoldersToRead() {
    std::vector<std::filesystem::path> folders;
    for (auto& folder : {FolderFromEnvironment("TARVINDL_RUNTIME"), Below("ProgramData"), Below("LOCALAPPDATA")}) {
        if (folder)
            folders.push_back(*folder);
    }
    return folders;
}

}
