#include "base/System.h"
#include "files/FileReplacement.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

namespace tarvin {

namespace {

// A new name is on the disk once its folder is. Some folders cannot be opened, and some file systems cannot sync a
// folder: there is nothing more that could be done.
Result<> SyncFolderOf(const std::filesystem::path& path) {
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return errno == EACCES ? Result<>() : LastSystemError();
    const Result<> synced = ::fsync(descriptor) == 0 || errno == EINVAL ? Result<>() : LastSystemError();
    ::close(descriptor);
    return synced;
}

}

std::filesystem::path WithoutLinks(const std::filesystem::path& path) {
    std::error_code error;
    std::filesystem::path target = std::filesystem::canonical(path, error);
    return error ? path : target;
}

Result<> TakeName(const std::filesystem::path& fresh, const std::filesystem::path& path) {
    if (::rename(fresh.c_str(), path.c_str()) != 0)
        return LastSystemError();
    return SyncFolderOf(path);
}

}
