#include "base/System.h"
#include "files/FileReplacement.h"
#include "files/FolderRightsPosix.h"
#include "files/NativeFile.h"

#include <algorithm>
#include <cassert>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <iterator>
#include <string>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace tarvin {

namespace {

int Descriptor(std::intptr_t handle) {
    return static_cast<int>(handle);
}

int OpenFlags(NativeFile::Access access) {
    // O_NONBLOCK: opening a pipe would otherwise wait for its other end, and stop the machine. No O_TRUNC: the file is
    // emptied once it is known to be a regular one.
    constexpr int always = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    switch (access) {
    case NativeFile::Access::Read:
        return always | O_RDONLY;
    case NativeFile::Access::ReadNoLink:
        return always | O_RDONLY | O_NOFOLLOW;
    case NativeFile::Access::Replace:
        return always | O_WRONLY | O_CREAT;
    case NativeFile::Access::Append:
        return always | O_WRONLY | O_CREAT | O_APPEND;
    case NativeFile::Access::Create:
        return always | O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW;
    case NativeFile::Access::CreateForOne:
        return always | O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW;
    }
    return always;
}

Error SystemError(int errorNumber) {
    return {SystemErrorText(static_cast<unsigned long>(errorNumber)), false, errorNumber == EWOULDBLOCK};
}

std::chrono::system_clock::time_point TimeOf(const timespec& time) {
    const auto sinceEpoch = std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    return std::chrono::system_clock::time_point(
        std::chrono::duration_cast<std::chrono::system_clock::duration>(sinceEpoch));
}

// The kernel asks the server, which refuses a lease for reasons of its own.
bool IsOnNetwork(int descriptor) {
    struct statfs fileSystem = {};
    if (::fstatfs(descriptor, &fileSystem) != 0)
        return true;
    constexpr std::uint32_t networks[] = {NFS_SUPER_MAGIC, SMB_SUPER_MAGIC, CIFS_SUPER_MAGIC, SMB2_SUPER_MAGIC};
    return std::ranges::find(networks, static_cast<std::uint32_t>(fileSystem.f_type)) != std::end(networks);
}

}

Result<> NativeFile::Open(const std::filesystem::path& path, Access access) {
    Close();
    bytesWritten = 0;
    const int descriptor = ::open(path.c_str(), OpenFlags(access), 0666);
    if (descriptor < 0)
        return LastSystemError();
    struct stat state = {};
    // close() may change errno, so the error is kept until the descriptor is closed.
    int error = 0;
    if (::fstat(descriptor, &state) != 0)
        error = errno;
    else if (S_ISDIR(state.st_mode))
        error = EISDIR;
    else if (!S_ISREG(state.st_mode))
        error = EINVAL;
    else if (access == Access::Replace && ::ftruncate(descriptor, 0) != 0)
        error = errno;
    // Some network drives have no locks.
    else if (access == Access::CreateForOne && ::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        error = errno;
    if (error != 0) {
        ::close(descriptor);
        return SystemError(error);
    }
    handle = descriptor;
    return {};
}

Result<std::size_t> NativeFile::Read(void* bytes, std::size_t byteCount) {
    for (;;) {
        const ssize_t count = ::read(Descriptor(handle), bytes, byteCount);
        if (count >= 0)
            return static_cast<std::size_t>(count);
        // A signal may interrupt a call before it has read anything.
        if (errno != EINTR)
            return LastSystemError();
    }
}

Result<> NativeFile::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(Descriptor(handle), bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
            bytesWritten += static_cast<std::uint64_t>(count);
        } else if (errno != EINTR) {
            return LastSystemError();
        }
    }
    return {};
}

Result<> NativeFile::Truncate(std::uint64_t byteCount) {
    const auto end = static_cast<off_t>(byteCount);
    const bool isCut = ::ftruncate(Descriptor(handle), end) == 0 && ::lseek(Descriptor(handle), end, SEEK_SET) == end;
    return isCut ? Result<>() : LastSystemError();
}

Result<> NativeFile::Rewind() {
    return ::lseek(Descriptor(handle), 0, SEEK_SET) == 0 ? Result<>() : LastSystemError();
}

Result<NativeFile::Stamp> NativeFile::Stamped() {
    struct stat state = {};
    if (::fstat(Descriptor(handle), &state) != 0)
        return LastSystemError();
    return Stamp{static_cast<std::uint64_t>(state.st_size), TimeOf(state.st_mtim)};
}

// The kernel grants a read lease only while no one has the file open for writing. It grants one to the owner of the
// file and to root.
NativeFile::Writers NativeFile::OtherWriters() {
    // A program that opens the file while the lease stands ends it, and the kernel then sends SIGIO, which would end
    // this program.
    static const bool isSignalIgnored = ::signal(SIGIO, SIG_IGN) != SIG_ERR;
    if (!isSignalIgnored)
        return Writers::Unknown;
    if (::fcntl(Descriptor(handle), F_SETLEASE, F_RDLCK) == 0) {
        (void)::fcntl(Descriptor(handle), F_SETLEASE, F_UNLCK);
        return Writers::None;
    }
    return errno == EAGAIN && !IsOnNetwork(Descriptor(handle)) ? Writers::Some : Writers::Unknown;
}

Result<std::uint64_t> NativeFile::Size() {
    struct stat state = {};
    if (::fstat(Descriptor(handle), &state) != 0)
        return LastSystemError();
    return static_cast<std::uint64_t>(state.st_size);
}

Result<> NativeFile::Sync() {
    return ::fsync(Descriptor(handle)) == 0 ? Result<>() : LastSystemError();
}

Result<> NativeFile::Lock() {
    return ::flock(Descriptor(handle), LOCK_EX | LOCK_NB) == 0 ? Result<>() : SystemError(errno);
}

void NativeFile::CopyRights(const std::filesystem::path& model) {
    struct stat wanted = {};
    if (::stat(model.c_str(), &wanted) != 0)
        return;
    // Only root may change the owner. Every user may set the group to one that he belongs to.
    bool keepsGroup = ::fchown(Descriptor(handle), wanted.st_uid, wanted.st_gid) == 0;
    if (!keepsGroup)
        keepsGroup = ::fchown(Descriptor(handle), static_cast<uid_t>(-1), wanted.st_gid) == 0;
    mode_t mode = wanted.st_mode & 0777;
    // The group is now another one. It gets what everyone has.
    if (!keepsGroup)
        mode = (mode & 0707) | ((mode & 07) << 3);
    (void)::fchmod(Descriptor(handle), mode);
}

void NativeFile::TakeFolderRights(const std::filesystem::path& folder) {
    TakeRightsOfFolder(Descriptor(handle), folder);
}

Result<> NativeFile::MoveTo(const std::filesystem::path& path, const std::filesystem::path& target) {
    assert(IsAt(path));
    return TakeName(path, target);
}

// Before the lock goes with the descriptor: the path may then lead to the file of another program.
void NativeFile::Delete(const std::filesystem::path& path) {
    ::unlink(path.c_str());
    Close();
}

// Device and inode number identify a file, whatever its names are.
bool NativeFile::IsAt(const std::filesystem::path& path) {
    struct stat own = {};
    struct stat named = {};
    return ::fstat(Descriptor(handle), &own) == 0 && ::stat(path.c_str(), &named) == 0 && own.st_dev == named.st_dev &&
           own.st_ino == named.st_ino;
}

void NativeFile::Close() {
    if (IsOpen())
        ::close(Descriptor(handle));
    handle = closedHandle;
}

}
