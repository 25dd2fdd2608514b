#include "files/FolderRightsPosix.h"

#include "files/FolderRights.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarvin {

// The bit for a folder whose files get its group has come from the folder above already. It is kept: chmod would take
// it away. A default access list has come too, and its mask is what the permissions of the group set here.
void TakeRightsOfFolder(int descriptor, const std::filesystem::path& folder) {
    struct stat own = {};
    struct stat above = {};
    if (::fstat(descriptor, &own) != 0 || ::stat(folder.empty() ? "." : folder.c_str(), &above) != 0)
        return;
    const bool hasGroup = own.st_gid == above.st_gid || ::fchown(descriptor, static_cast<uid_t>(-1), above.st_gid) == 0;
    mode_t mode = above.st_mode & 0775;
    if (!hasGroup)
        mode = (mode & 0705) | ((mode & 05) << 3);
    mode |= 0700;
    mode = S_ISDIR(own.st_mode) ? mode | (own.st_mode & S_ISGID) : mode & 0666;
    (void)::fchmod(descriptor, mode);
}

std::error_code MakeSharedFolder(const std::filesystem::path& folder) {
    if (::mkdir(folder.c_str(), 0777) != 0) {
        const int error = errno == EEXIST ? ENOTDIR : errno;
        std::error_code ignored;
        return std::filesystem::is_directory(folder, ignored) ? std::error_code()
                                                              : std::error_code(error, std::system_category());
    }
    // A link that another user has put there meanwhile must not pass these rights on.
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor >= 0) {
        TakeRightsOfFolder(descriptor, folder.parent_path());
        ::close(descriptor);
    }
    return {};
}

}
