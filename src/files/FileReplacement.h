#pragma once
// The steps in which files are replaced, and the names of new files. Any thread.

#include "base/Result.h"

#include <filesystem>

namespace tarvin {

// The path of the file itself, where `path` leads through links. `path` itself if it leads nowhere.
std::filesystem::path WithoutLinks(const std::filesystem::path& path);

// Success if a file can take the name `path`: the name is free, or it is that of a link or of a file that may be
// written. isBusy if another program holds that file.
Result<> CheckReplaceable(const std::filesystem::path& path);

// Removes the file or link with this name, if there is one. isBusy if another program has locked the file or does not
// share it. Refuses a folder and a device.
Result<> RemoveUnused(const std::filesystem::path& path);

// Gives the file at `path` a second name, as a hard link. Blocks until the name is on the disk. Fails if `other`
// exists, and on file systems without hard links.
Result<> AddName(const std::filesystem::path& path, const std::filesystem::path& other);

// Gives the file a second name, or copies it where that fails: content, rights and time. Blocks until it is on the
// disk. Fails if `other` exists.
Result<> LinkOrCopy(const std::filesystem::path& path, const std::filesystem::path& other);

// Gives the file `fresh` the name `path` in one step, in place of a file that has it. Blocks until the step is on the
// disk. isBusy if another program holds that file.
Result<> TakeName(const std::filesystem::path& fresh, const std::filesystem::path& path);

// A name for the new content of the file at `path`, beside it: "<name>.<16 random hexadecimal digits>.new".
std::filesystem::path FreshNameFor(const std::filesystem::path& path);
// True for all names that FreshNameFor may give.
bool IsFreshNameFor(const std::filesystem::path& fresh, const std::filesystem::path& path);

}
