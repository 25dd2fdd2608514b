#include "base/System.h"
#include "base/WindowsApi.h"
#include "files/Links.h"

#include <string>

namespace tarvin {

bool IsLink(const std::filesystem::path& path) {
    WIN32_FIND_DATAW found = {};
    HANDLE search = ::FindFirstFileW(path.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return false;
    ::FindClose(search);
    return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK || found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

// Windows lets administrators alone make links.
bool AreLinksFollowedIn(const std::filesystem::path&) {
    return true;
}

Result<std::filesystem::path> RealPath(const std::filesystem::path& path) {
    HANDLE target = ::CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (target == INVALID_HANDLE_VALUE)
        return LastSystemError();
    // The longest path that the system has.
    constexpr DWORD bufferUnits = 32768;
    std::wstring name(bufferUnits, L'\0');
    const DWORD length = ::GetFinalPathNameByHandleW(target, name.data(), bufferUnits, FILE_NAME_NORMALIZED);
    const Error reason = LastSystemError();
    ::CloseHandle(target);
    if (length == 0 || length >= bufferUnits)
        return reason;
    name.resize(length);
    // A path on a drive comes with a prefix, which not every call takes: \\?\C:\folder\file.
    const std::wstring prefix = L"\\\\?\\";
    if (name.starts_with(prefix) && name.size() > prefix.size() + 1 && name[prefix.size() + 1] == L':')
        name.erase(0, prefix.size());
    return std::filesystem::path(name);
}

}
