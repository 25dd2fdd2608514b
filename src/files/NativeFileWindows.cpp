#include "base/System.h"
#include "base/WindowsApi.h"
#include "files/NativeFile.h"

#include <algorithm>
#include <cstring>
#include <ratio>
#include <string>
#include <system_error>
#include <vector>

namespace tarvin {

namespace {

HANDLE Handle(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

// The largest piece handed over in one call, whose count has 32 bits.
constexpr std::size_t largestPiece = std::size_t{1} << 30;

constexpr DWORD sharedInEveryWay = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

DWORD RightsFor(NativeFile::Access access) {
    switch (access) {
    case NativeFile::Access::Read:
    case NativeFile::Access::ReadNoLink:
        return GENERIC_READ;
    case NativeFile::Access::Replace:
        return GENERIC_WRITE;
    case NativeFile::Access::Append:
        // Alone: the system puts each write at the end of the file, also while another program writes.
        return FILE_APPEND_DATA | SYNCHRONIZE;
    case NativeFile::Access::Create:
        return GENERIC_WRITE | WRITE_DAC;
    case NativeFile::Access::CreateForOne:
        return GENERIC_READ | GENERIC_WRITE | WRITE_DAC | DELETE;
    }
    return 0;
}

DWORD DispositionFor(NativeFile::Access access) {
    switch (access) {
    case NativeFile::Access::Read:
    case NativeFile::Access::ReadNoLink:
        return OPEN_EXISTING;
    case NativeFile::Access::Replace:
    case NativeFile::Access::Append:
        return OPEN_ALWAYS;
    case NativeFile::Access::Create:
    case NativeFile::Access::CreateForOne:
        break;
    }
    return CREATE_NEW;
}

Error SystemError(DWORD error) {
    return {SystemErrorText(error), false, error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION};
}

}

Result<> NativeFile::Open(const std::filesystem::path& path, Access access) {
    Close();
    bytesWritten = 0;
    // Shared in every way, as files are on POSIX: other programs may read, move and delete the file while it is open.
    const DWORD sharing = access == Access::CreateForOne ? 0 : sharedInEveryWay;
    HANDLE opened = ::CreateFileW(path.c_str(), RightsFor(access), sharing, nullptr, DispositionFor(access),
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return SystemError(::GetLastError());
    // The file is emptied once it is known to be on a disk, and neither a device nor a pipe.
    DWORD error = ERROR_SUCCESS;
    if (::GetFileType(opened) != FILE_TYPE_DISK)
        error = ERROR_INVALID_NAME;
    else if (access == Access::Replace && !::SetEndOfFile(opened))
        error = ::GetLastError();
    if (error != ERROR_SUCCESS) {
        ::CloseHandle(opened);
        return SystemError(error);
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

Result<> NativeFile::Truncate(std::uint64_t byteCount) {
    LARGE_INTEGER end = {};
    end.QuadPart = static_cast<LONGLONG>(byteCount);
    const bool isCut = ::SetFilePointerEx(Handle(handle), end, nullptr, FILE_BEGIN) && ::SetEndOfFile(Handle(handle));
    return isCut ? Result<>() : LastSystemError();
}

Result<> NativeFile::Rewind() {
    return ::SetFilePointerEx(Handle(handle), {}, nullptr, FILE_BEGIN) ? Result<>() : LastSystemError();
}

Result<NativeFile::Stamp> NativeFile::Stamped() {
    BY_HANDLE_FILE_INFORMATION info = {};
    if (!::GetFileInformationByHandle(Handle(handle), &info))
        return LastSystemError();
    // The system counts in units of 100 ns since 1601.
    constexpr std::int64_t unitsUntil1970 = 116'444'736'000'000'000;
    const auto wide = [](DWORD high, DWORD low) { return static_cast<std::uint64_t>(high) << 32 | low; };
    const auto units =
        static_cast<std::int64_t>(wide(info.ftLastWriteTime.dwHighDateTime, info.ftLastWriteTime.dwLowDateTime));
    using Units = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
    const auto sinceEpoch =
        std::chrono::duration_cast<std::chrono::system_clock::duration>(Units(units - unitsUntil1970));
    return Stamp{wide(info.nFileSizeHigh, info.nFileSizeLow), std::chrono::system_clock::time_point(sinceEpoch)};
}

// The system refuses an opening that does not share the file for writing as long as another one writes it.
NativeFile::Writers NativeFile::OtherWriters() {
    HANDLE reopened = ::ReOpenFile(Handle(handle), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, 0);
    if (reopened == INVALID_HANDLE_VALUE)
        return ::GetLastError() == ERROR_SHARING_VIOLATION ? Writers::Some : Writers::Unknown;
    ::CloseHandle(reopened);
    return Writers::None;
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
    return ::LockFileEx(Handle(handle), flags, 0, 1, 0, &place) ? Result<>() : SystemError(::GetLastError());
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

void NativeFile::TakeFolderRights(const std::filesystem::path&) {}

// By the handle, because a file that is not shared cannot be moved by its name.
Result<> NativeFile::MoveTo([[maybe_unused]] const std::filesystem::path& path, const std::filesystem::path& target) {
    std::error_code pathError;
    const std::wstring name = std::filesystem::absolute(target, pathError).native();
    if (pathError)
        return Error{FromUtf8(pathError.message())};
    const std::size_t nameBytes = name.size() * sizeof(wchar_t);
    // The structure ends with the first unit of the name.
    std::vector<unsigned char> buffer(sizeof(FILE_RENAME_INFO) + nameBytes);
    auto* const info = reinterpret_cast<FILE_RENAME_INFO*>(buffer.data());
    info->ReplaceIfExists = TRUE;
    info->FileNameLength = static_cast<DWORD>(nameBytes);
    std::memcpy(info->FileName, name.data(), nameBytes);
    if (!::SetFileInformationByHandle(Handle(handle), FileRenameInfo, info, static_cast<DWORD>(buffer.size()))) {
        const DWORD error = ::GetLastError();
        Error reason = SystemError(error);
        // The system answers so for a target that another program has open.
        reason.isBusy = reason.isBusy || error == ERROR_ACCESS_DENIED;
        return reason;
    }
    // Brings the new name to the disk.
    return Sync();
}

void NativeFile::Delete([[maybe_unused]] const std::filesystem::path& path) {
    FILE_DISPOSITION_INFO disposition = {TRUE};
    ::SetFileInformationByHandle(Handle(handle), FileDispositionInfo, &disposition, sizeof disposition);
    Close();
}

// Volume and file index identify a file, whatever its names are. Opened without any right, so that no other program is
// disturbed.
bool NativeFile::IsAt(const std::filesystem::path& path) {
    HANDLE named =
        ::CreateFileW(path.c_str(), 0, sharedInEveryWay, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
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
