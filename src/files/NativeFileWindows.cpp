#include "base/System.h"
#include "base/WindowsApi.h"
#include "files/NativeFile.h"

#include <algorithm>
#include <string>

namespace tarvin {

namespace {

HANDLE Handle(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

}

bool NativeFile::Fail(int systemError) {
    lastError = SystemErrorText(static_cast<unsigned long>(systemError));
    return false;
}

bool NativeFile::Open(const std::filesystem::path& path, Access access) {
    Close();
    const DWORD rights = access == Access::Read      ? GENERIC_READ
                         : access == Access::Replace ? GENERIC_WRITE
                                                     : FILE_APPEND_DATA | SYNCHRONIZE;
    const DWORD disposition = access == Access::Read ? OPEN_EXISTING : OPEN_ALWAYS;
    HANDLE opened = ::CreateFileW(path.c_str(), rights, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return Fail(static_cast<int>(::GetLastError()));
    // Truncated only once it is known to be a file on a disk, not a device or a pipe.
    DWORD error = 0;
    if (::GetFileType(opened) != FILE_TYPE_DISK)
        error = ERROR_INVALID_NAME;
    else if (access == Access::Replace && !::SetEndOfFile(opened))
        error = ::GetLastError();
    if (error != 0) {
        ::CloseHandle(opened);
        return Fail(static_cast<int>(error));
    }
    handle = reinterpret_cast<std::intptr_t>(opened);
    return true;
}

std::optional<std::size_t> NativeFile::Read(void* bytes, std::size_t byteCount) {
    const DWORD wanted = static_cast<DWORD>(std::min<std::size_t>(byteCount, 1U << 30));
    DWORD count = 0;
    if (!::ReadFile(Handle(handle), bytes, wanted, &count, nullptr)) {
        Fail(static_cast<int>(::GetLastError()));
        return std::nullopt;
    }
    return count;
}

bool NativeFile::Write(std::string_view bytes, std::size_t& written) {
    written = 0;
    while (written < bytes.size()) {
        const DWORD wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - written, 1U << 30));
        DWORD count = 0;
        if (!::WriteFile(Handle(handle), bytes.data() + written, wanted, &count, nullptr))
            return Fail(static_cast<int>(::GetLastError()));
        written += count;
    }
    return true;
}

std::optional<std::uint64_t> NativeFile::Size() {
    LARGE_INTEGER size = {};
    if (!::GetFileSizeEx(Handle(handle), &size)) {
        Fail(static_cast<int>(::GetLastError()));
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(size.QuadPart);
}

bool NativeFile::Sync() {
    return ::FlushFileBuffers(Handle(handle)) || Fail(static_cast<int>(::GetLastError()));
}

bool NativeFile::Lock() {
    // A byte that no file reaches: what is locked on this system cannot be read either.
    OVERLAPPED place = {};
    place.OffsetHigh = 0x7FFFFFFF;
    return ::LockFileEx(Handle(handle), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) ||
           Fail(static_cast<int>(::GetLastError()));
}

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

bool ReplaceWholeFile(const std::filesystem::path& path, std::string_view content) {
    const std::filesystem::path fresh = path.native() + L"." + std::to_wstring(::GetCurrentProcessId()) + L".new";
    NativeFile file;
    std::size_t written = 0;
    const bool complete = file.Open(fresh, NativeFile::Access::Replace) && file.Write(content, written) && file.Sync();
    file.Close();
    if (complete && ::MoveFileExW(fresh.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return true;
    ::DeleteFileW(fresh.c_str());
    return false;
}

}
