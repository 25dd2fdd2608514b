#include "base/Messages.h"
#include "base/System.h"
#include "base/WindowsApi.h"
#include "files/FileReplacement.h"
#include "files/Links.h"

namespace tarvin {

namespace {

Error SystemError(DWORD error) {
    return {SystemErrorText(error), false, error == ERROR_SHARING_VIOLATION};
}

}

Result<> TakeName(const std::filesystem::path& fresh, const std::filesystem::path& path) {
    // WRITE_THROUGH waits until the new name is on the disk.
    if (!::MoveFileExW(fresh.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return LastSystemError();
    return {};
}

Result<> CheckReplaceable(const std::filesystem::path& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    // A missing folder shows when the first file is made in it.
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return {};
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return Error{text::fileReason::isFolder};
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
        return Error{text::fileReason::writeProtected};
    // A file is replaced only if every program that has it open lets others delete it.
    HANDLE opened = ::CreateFileW(path.c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return SystemError(::GetLastError());
    ::CloseHandle(opened);
    return {};
}

Result<> RemoveUnused(const std::filesystem::path& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return {};
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && !IsLink(path))
        return Error{text::fileReason::isFolder};
    const bool isRemoved =
        (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? ::RemoveDirectoryW(path.c_str()) : ::DeleteFileW(path.c_str());
    return isRemoved ? Result<>() : SystemError(::GetLastError());
}

Result<> AddName(const std::filesystem::path& path, const std::filesystem::path& other) {
    return ::CreateHardLinkW(other.c_str(), path.c_str(), nullptr) ? Result<>() : LastSystemError();
}

}
