#include "base/System.h"
#include "base/WindowsApi.h"
#include "files/FileReplacement.h"

#include <string>

namespace tarvin {

std::filesystem::path WithoutLinks(const std::filesystem::path& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
        return path;
    HANDLE target = ::CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (target == INVALID_HANDLE_VALUE)
        return path;
    // The longest path that the system has.
    constexpr DWORD bufferUnits = 32768;
    std::wstring name(bufferUnits, L'\0');
    const DWORD length = ::GetFinalPathNameByHandleW(target, name.data(), bufferUnits, FILE_NAME_NORMALIZED);
    ::CloseHandle(target);
    if (length == 0 || length >= bufferUnits)
        return path;
    name.resize(length);
    // A path on a drive comes with a prefix, which not every call takes: \\?\C:\folder\file.
    const std::wstring prefix = L"\\\\?\\";
    if (name.starts_with(prefix) && name.size() > prefix.size() + 1 && name[prefix.size() + 1] == L':')
        name.erase(0, prefix.size());
    return name;
}

Result<> TakeName(const std::filesystem::path& fresh, const std::filesystem::path& path) {
    // WRITE_THROUGH waits until the new name is on the disk.
    if (!::MoveFileExW(fresh.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return LastSystemError();
    return {};
}

}
