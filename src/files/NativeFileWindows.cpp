#include "base/System.h"
#include "base/WindowsApi.h"
#include "files/NativeFile.h"

#include <algorithm>
#include <vector>

namespace tarvin {

namespace {

HANDLE Handle(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

// The largest piece handed over in one call, whose count has 32 bits.
constexpr std::size_t largestPiece = std::size_t{1} << 30;

}

Result<> NativeFile::Open(const std::filesystem::path& path, Access access) {
    Close();
    bytesWritten = 0;
    // FILE_APPEND_DATA alone: the system puts each write at the end of the file, also while another program writes.
    const DWORD rights = access == Access::Read      ? GENERIC_READ
                         : access == Access::Replace ? GENERIC_WRITE
                         : access == Access::Create  ? GENERIC_WRITE | WRITE_DAC
                                                     : FILE_APPEND_DATA | SYNCHRONIZE;
    const DWORD disposition = access == Access::Read     ? OPEN_EXISTING
                              : access == Access::Create ? CREATE_NEW
                                                         : OPEN_ALWAYS;
    // Shared in every way, as files are on POSIX: other programs may read, move and delete the file while it is open.
    HANDLE opened = ::CreateFileW(path.c_str(), rights, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return LastSystemError();
    // The file is emptied once it is known to be on a disk, and neither a device nor a pipe.
    DWORD error = ERROR_SUCCESS;
    if (::GetFileType(opened) != FILE_TYPE_DISK)
        error = ERROR_INVALID_NAME;
    else if (access == Access::Replace && !::SetEndOfFile(opened))
        error = ::GetLastError();
    if (error != ERROR_SUCCESS) {
        ::CloseHandle(opened);
        return Error{SystemErrorText(error)};
    }
    handle = reinterpret_cast<std::intptr_t>(opened);
    return {};
}

Result<std::size_t> NativeFile::Read(void* bytes, std::size_t byteCount) {
    const DWORD wanted = static_cast<DWORD>(std::min(byteCount, largestPiece));
    DWORD count = 0;
    if (!::ReadFile(Handle(handle), bytes, wanted, &count, nullptr))
        return LastSystemError();
    return static_cast<std::size_t>(count);
}

Result<> NativeFile::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const DWORD wanted = static_cast<DWORD>(std::min(bytes.size(), largestPiece));
        DWORD count = 0;
        if (!::WriteFile(Handle(handle), bytes.data(), wanted, &count, nullptr))
            return LastSystemError();
        bytes.remove_prefix(count);
        bytesWritten += count;
    }
    return {};
}

Result<std::uint64_t> NativeFile::Size() {
    LARGE_INTEGER size = {};
    if (!::GetFileSizeEx(Handle(handle), &size))
        return LastSystemError();
    return static_cast<std::uint64_t>(size.QuadPart);
}

Result<> NativeFile::Sync() {
    return ::FlushFileBuffers(Handle(handle)) ? Result<>() : LastSystemError();
}

Result<> NativeFile::Lock() {
    // Windows refuses to read locked bytes, so the lock is on a byte far beyond the end of every file.
    OVERLAPPED place = {};
    place.OffsetHigh = 0x7FFFFFFF;
    constexpr DWORD flags = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
    return ::LockFileEx(Handle(handle), flags, 0, 1, 0, &place) ? Result<>() : LastSystemError();
}

// The owner stays the one who has made the file: giving a file away needs a privilege.
void NativeFile::CopyRights(const std::filesystem::path& model) {
    DWORD length = 0;
    ::GetFileSecurityW(model.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &length);
    std::vector<unsigned char> rights(length);
    if (length > 0 && ::GetFileSecurityW(model.c_str(), DACL_SECURITY_INFORMATION, rights.data(), length, &length))
        ::SetKernelObjectSecurity(Handle(handle), DACL_SECURITY_INFORMATION, rights.data());
    const DWORD attributes = ::GetFileAttributesW(model.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return;
    // Times of zero stay as they are.
    FILE_BASIC_INFO info = {};
    info.FileAttributes = attributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE);
    if (info.FileAttributes == 0)
        info.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    ::SetFileInformationByHandle(Handle(handle), FileBasicInfo, &info, sizeof info);
}

// Volume and file index identify a file, whatever its names are. Opened without any right, so that no other program is
// disturbed.
bool NativeFile::IsAt(const std::filesystem::path& path) {
    HANDLE named = ::CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                 OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (named == INVALID_HANDLE_VALUE)
        return false;
    BY_HANDLE_FILE_INFORMATION own = {};
    BY_HANDLE_FILE_INFORMATION other = {};
    const bool isKnown =
        ::GetFileInformationByHandle(Handle(handle), &own) && ::GetFileInformationByHandle(named, &other);
    ::CloseHandle(named);
    return isKnown && own.dwVolumeSerialNumber == other.dwVolumeSerialNumber &&
           own.nFileIndexHigh == other.nFileIndexHigh && own.nFileIndexLow == other.nFileIndexLow;
}

void NativeFile::Close() {
    if (IsOpen())
        ::CloseHandle(Handle(handle));
    handle = closedHandle;
}

}
