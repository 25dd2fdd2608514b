#include "base/System.h"
#include "files/Installation.h"
#include "setup/InstallationFiles.h"

#include <system_error>

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

constexpr const char* serviceUser = "tarvindl";
// The group may write, and files in the folder take its group.
constexpr mode_t ncFolderMode = 02775;

}

Result<> LinkData(const fs::path& shared, const fs::path& target) {
    std::error_code error;
    fs::create_symlink(shared, target, error);
    return error ? Result<>(Error{FromUtf8(error.message())}) : Result<>();
}

void GiveToService(const fs::path& installation) {
    const auto system = SystemInstallation();
    if (!MayChangeSystem() || !system || installation != *system)
        return;
    const passwd* const user = ::getpwnam(serviceUser);
    if (user == nullptr)
        return;
    const auto give = [&](const fs::path& path) { (void)!::lchown(path.c_str(), user->pw_uid, user->pw_gid); };
    std::error_code ignored;
    give(installation.parent_path());
    give(installation);
    for (const auto& entry : fs::directory_iterator(installation, ignored))
        give(entry.path());
    (void)!::chmod((installation / "NC Files").c_str(), ncFolderMode);
}

void GiveToOwnerOfFolder(const fs::path& file) {
    struct stat folder = {};
    if (MayChangeSystem() && ::stat(file.parent_path().c_str(), &folder) == 0)
        (void)!::lchown(file.c_str(), folder.st_uid, folder.st_gid);
}

bool MayChangeSystem() {
    return ::geteuid() == 0;
}

}
