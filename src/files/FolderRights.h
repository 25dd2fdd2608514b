#pragma once
// Rights that follow the folder and not the umask of the process, for files that several users share, such as NC files.
// Any thread.

#include <filesystem>
#include <system_error>

namespace tarvin {

// Makes the folder if there is none. On POSIX it gets group and permissions of the folder above it, but others get no
// right to write; on Windows it inherits. An error if there is no folder afterwards. See NativeFile::TakeFolderRights
// for files.
std::error_code MakeSharedFolder(const std::filesystem::path& folder);

}
