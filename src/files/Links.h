#pragma once
// Links in paths: symbolic links, and junctions on Windows. Other files that Windows redirects, such as those of a
// cloud folder, are no links. Any thread.

#include "base/Result.h"

#include <filesystem>

namespace tarvin {

// Whether `path` names a link, also one that leads nowhere.
bool IsLink(const std::filesystem::path& path);

// Whether this program goes where a link in `folder` leads. Root does not in a folder of another user, who could lead
// it to any file of the system. True if the owner is not known, and on Windows.
bool AreLinksFollowedIn(const std::filesystem::path& folder);

// The same for the file at `path`: fails if it is a link that is not followed.
Result<> CheckLink(const std::filesystem::path& path);

// The absolute path of the file or folder that `path` leads to, without links. Fails if it leads nowhere.
Result<std::filesystem::path> RealPath(const std::filesystem::path& path);

}
