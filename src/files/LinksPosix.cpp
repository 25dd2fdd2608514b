#include "base/System.h"
#include "files/Links.h"

#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace tarvin {

bool IsLink(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_symlink(std::filesystem::symlink_status(path, ignored));
}

bool AreLinksFollowedIn(const std::filesystem::path& folder) {
    constexpr uid_t root = 0;
    struct stat state = {};
    return ::geteuid() != root || ::stat(folder.empty() ? "." : folder.c_str(), &state) != 0 || state.st_uid == root;
}

Result<std::filesystem::path> RealPath(const std::filesystem::path& path) {
    std::error_code error;
    std::filesystem::path real = std::filesystem::canonical(path, error);
    if (error)
        return Error{SystemErrorText(static_cast<unsigned long>(error.value()))};
    return real;
}

}
