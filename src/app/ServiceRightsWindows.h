#pragma once
// The rights of a service's account on the folders that it works in.

#include "base/Result.h"

#include <filesystem>

namespace tarvin {

// Use: read files and start programs. Change: everything but changing rights.
enum class FolderRights { Use, Change };

// Gives the account these rights on the folder and everything below it, beside those that it has. Needs the right to
// change the folder's rights.
Result<> GrantFolderRights(const std::filesystem::path& folder, const KelText& account, FolderRights rights);

}
