#include "base/PublishMessages.h"
#include "base/System.h"
#include "publish/RuntimeFolders.h"

#include <cerrno>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

namespace tarvin {

namespace {

constexpr const char* systemFolder = "/run/tarvindl";

std::optional<std::filesystem::path> UserFolder() {
    const auto runtime = FolderFromEnvironment("XDG_RUNTIME_DIR");
    return runtime ? std::optional(*runtime / "tarvindl") : std::nullopt;
}

bool MayWrite(const char* folder) {
    struct stat state = {};
    return ::stat(folder, &state) == 0 && S_ISDIR(state.st_mode) && ::access(folder, W_OK | X_OK) == 0;
}

Result<std::filesystem::path> Made(const std::filesystem::path& folder) {
    // The folder around the user's own one is private.
    if (::mkdir(folder.c_str(), 0750) != 0 && errno != EEXIST)
        return Error{FromPath(folder) + u": " + LastSystemError().text};
    return folder;
}

}

Result<std::filesystem::path> RuntimeFolderToWrite() {
    if (const auto chosen = FolderFromEnvironment("TARVINDL_RUNTIME"))
        return Made(*chosen);
    if (MayWrite(systemFolder))
        return std::filesystem::path(systemFolder);
    if (const auto user = UserFolder())
        return Made(*user);
    return Error{text::publish::noFolder};
}

std::vector<std::filesystem::path> RuntimeFoldersToRead() {
    std::vector<std::filesystem::path> folders;
    if (auto chosen = FolderFromEnvironment("TARVINDL_RUNTIME"))
        folders.push_back(std::move(*chosen));
    folders.emplace_back(systemFolder);
    if (auto user = UserFolder())
        folders.push_back(std::move(*user));
    return folders;
}

}
