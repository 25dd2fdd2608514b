#include "base/System.h"
#include "files/NativeFile.h"

#include <cerrno>
#include <string>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
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
    case NativeFile::Access::Replace:
        return always | O_WRONLY | O_CREAT;
    case NativeFile::Access::Append:
        return always | O_WRONLY | O_CREAT | O_APPEND;
    case NativeFile::Access::Create:
        return always | O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW;
    }
    return always;
}

Error SystemError(int errorNumber) {
    return {SystemErrorText(static_cast<unsigned long>(errorNumber))};
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
    return ::flock(Descriptor(handle), LOCK_EX | LOCK_NB) == 0 ? Result<>() : LastSystemError();
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
