#pragma once
// Rights of shared files and folders as POSIX has them. Any thread.

#include <filesystem>

namespace tarvin {

// Gives the file or folder behind the descriptor the group of `folder` and its permissions; others get no right to
// write, and a file no one's to run it. If this user may not give that group, the group gets what everyone has. Has no
// effect on file systems without such rights.
void TakeRightsOfFolder(int descriptor, const std::filesystem::path& folder);

}
