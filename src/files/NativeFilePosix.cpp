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
    // Without blocking, so that a pipe somebody put in place of a file cannot stop the machine; truncated only once it
    // is known to be a regular file.
    constexpr int always = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    switch (access) {
    case NativeFile::Access::Read:
        return always | O_RDONLY;
    case NativeFile::Access::Replace:
        return always | O_WRONLY | O_CREAT;
    case NativeFile::Access::Append:
        return always | O_WRONLY | O_CREAT | O_APPEND;
    }
    return always;
}

bool SyncFolderOf(const std::filesystem::path& path) {
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool synced = ::fsync(descriptor) == 0;
    ::close(descriptor);
    return synced;
}

}

bool NativeFile::Fail(int systemError) {
    lastError = SystemErrorText(static_cast<unsigned long>(systemError));
    return false;
}

bool NativeFile::Open(const std::filesystem::path& path, Access access) {
    Close();
    const int descriptor = ::open(path.c_str(), OpenFlags(access), 0666);
    if (descriptor < 0)
        return Fail(errno);
    struct stat state = {};
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
        return Fail(error);
    }
    handle = descriptor;
    return true;
}

std::optional<std::size_t> NativeFile::Read(void* bytes, std::size_t byteCount) {
    for (;;) {
        const ssize_t count = ::read(Descriptor(handle), bytes, byteCount);
        if (count >= 0)
            return static_cast<std::size_t>(count);
        if (errno != EINTR) {
            Fail(errno);
            return std::nullopt;
        }
    }
}

bool NativeFile::Write(std::string_view bytes, std::size_t& written) {
    written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(Descriptor(handle), bytes.data() + written, bytes.size() - written);
        if (count >= 0)
            written += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            return Fail(errno);
    }
    return true;
}

std::optional<std::uint64_t> NativeFile::Size() {
    struct stat state = {};
    if (::fstat(Descriptor(handle), &state) != 0) {
        Fail(errno);
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(state.st_size);
}

bool NativeFile::Sync() {
    return ::fsync(Descriptor(handle)) == 0 || Fail(errno);
}

bool NativeFile::Lock() {
    return ::flock(Descriptor(handle), LOCK_EX | LOCK_NB) == 0 || Fail(errno);
}

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

bool ReplaceWholeFile(const std::filesystem::path& named, std::string_view content) {
    // A link stays a link: what it leads to is replaced.
    std::error_code isMissing;
    const std::filesystem::path target = std::filesystem::canonical(named, isMissing);
    const std::filesystem::path& path = isMissing ? named : target;
    struct stat state = {};
    const bool isThere = ::stat(path.c_str(), &state) == 0;
    if (isThere && !S_ISREG(state.st_mode))
        return false;
    // A name of its own for each process: two programs that save at once must not write into one another's copy.
    const std::filesystem::path fresh = path.native() + "." + std::to_string(::getpid()) + ".new";
    NativeFile file;
    std::size_t written = 0;
    const bool complete = file.Open(fresh, NativeFile::Access::Replace) && file.Write(content, written) && file.Sync();
    file.Close();
    if (complete && isThere)
        ::chmod(fresh.c_str(), state.st_mode & 07777);
    if (complete && ::rename(fresh.c_str(), path.c_str()) == 0)
        return SyncFolderOf(path);
    ::unlink(fresh.c_str());
    return false;
}

}
