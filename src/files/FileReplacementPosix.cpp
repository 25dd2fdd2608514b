#include "base/Messages.h"
#include "base/System.h"
#include "files/FileReplacement.h"

#include <cerrno>

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarvin {

namespace {

// A network drive answers so as long as another program holds the file.
Error SystemError(int error) {
    return {SystemErrorText(static_cast<unsigned long>(error)), false, error == EBUSY || error == ETXTBSY};
}

std::filesystem::path FolderOf(const std::filesystem::path& path) {
    return path.has_parent_path() ? path.parent_path() : ".";
}

// A new name is on the disk once its folder is. Some folders cannot be opened, and some file systems cannot sync a
// folder: there is nothing more that could be done.
Result<> SyncFolderOf(const std::filesystem::path& path) {
    const int descriptor = ::open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return errno == EACCES ? Result<>() : LastSystemError();
    const Result<> synced = ::fsync(descriptor) == 0 || errno == EINVAL ? Result<>() : LastSystemError();
    ::close(descriptor);
    return synced;
}

// Opens an existing file. Some network drives give the lock only to a program that may write the file.
int OpenToLock(const std::filesystem::path& path) {
    constexpr int always = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const int descriptor = ::open(path.c_str(), always | O_WRONLY);
    return descriptor >= 0 ? descriptor : ::open(path.c_str(), always | O_RDONLY);
}

}

Result<> TakeName(const std::filesystem::path& fresh, const std::filesystem::path& path) {
    if (::rename(fresh.c_str(), path.c_str()) != 0)
        return SystemError(errno);
    return SyncFolderOf(path);
}

Result<> CheckReplaceable(const std::filesystem::path& path) {
    struct stat file = {};
    // A missing folder shows when the first file is made in it.
    if (::lstat(path.c_str(), &file) != 0)
        return {};
    if (S_ISDIR(file.st_mode))
        return Error{text::fileReason::isFolder};
    if (S_ISLNK(file.st_mode))
        return {};
    if (!S_ISREG(file.st_mode))
        return Error{text::fileReason::noRegularFile};
    // The system would replace a write-protected file all the same. Its owner has protected the content.
    if (::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0)
        return Error{text::fileReason::writeProtected};
    // In a folder like /tmp a file belongs to its owner alone.
    struct stat folder = {};
    const uid_t user = ::geteuid();
    if (::stat(FolderOf(path).c_str(), &folder) == 0 && (folder.st_mode & S_ISVTX) != 0 && user != 0 &&
        user != folder.st_uid && user != file.st_uid)
        return SystemError(EPERM);
    return {};
}

Result<> RemoveUnused(const std::filesystem::path& path) {
    struct stat named = {};
    if (::lstat(path.c_str(), &named) != 0)
        return errno == ENOENT ? Result<>() : LastSystemError();
    if (S_ISDIR(named.st_mode))
        return Error{text::fileReason::isFolder};
    if (!S_ISREG(named.st_mode) && !S_ISLNK(named.st_mode))
        return Error{text::fileReason::noRegularFile};
    // The lock is held until the name is gone.
    const int descriptor = S_ISREG(named.st_mode) ? OpenToLock(path) : -1;
    Result<> result;
    if (descriptor >= 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        result = Error{SystemErrorText(EWOULDBLOCK), false, true};
    else if (::unlink(path.c_str()) != 0 && errno != ENOENT)
        result = LastSystemError();
    if (descriptor >= 0)
        ::close(descriptor);
    return result;
}

Result<> AddName(const std::filesystem::path& path, const std::filesystem::path& other) {
    if (::link(path.c_str(), other.c_str()) != 0)
        return LastSystemError();
    const Result<> synced = SyncFolderOf(other);
    if (!synced)
        ::unlink(other.c_str());
    return synced;
}

}
