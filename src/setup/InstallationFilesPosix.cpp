#include "base/DescriptorPosix.h"
#include "files/Installation.h"
#include "setup/InstallationFiles.h"

#include <system_error>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

constexpr const char* serviceUser = "tarvindl";
// The group may write, and files in the folder take its group.
constexpr mode_t ncFolderMode = 02775;

// Opened first, without following a link: a user who may write in the folder above must not lead root elsewhere.
void GiveNcFolder(const fs::path& folder, uid_t user, gid_t group) {
    const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (opened.Number() < 0)
        return;
    (void)!::fchown(opened.Number(), user, group);
    (void)!::fchmod(opened.Number(), ncFolderMode);
}

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
    GiveNcFolder(installation / "NC Files", user->pw_uid, user->pw_gid);
}

void GiveToOwnerOf(const fs::path& installation, const fs::path& path) {
    struct stat model = {};
    if (MayChangeSystem() && ::stat(installation.c_str(), &model) == 0)
        (void)!::lchown(path.c_str(), model.st_uid, model.st_gid);
}

void GiveFolderToOwnerOf(const fs::path& installation, const fs::path& folder) {
    struct stat model = {};
    if (MayChangeSystem() && ::stat(installation.c_str(), &model) == 0)
        GiveNcFolder(folder, model.st_uid, model.st_gid);
}

bool MayChangeSystem() {
    return ::geteuid() == 0;
}

}
