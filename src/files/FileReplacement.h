#pragma once
// The steps of ReplaceWholeFile that differ between the systems, and the names of its new files. Any thread.

#include "base/Result.h"

#include <filesystem>

namespace tarvin {

// The path of the file itself, where `path` leads through links. `path` itself if it leads nowhere.
std::filesystem::path WithoutLinks(const std::filesystem::path& path);

// Gives the file `fresh` the name `path` in one step, in place of a file that has it. Blocks until the step is on the
// disk.
Result<> TakeName(const std::filesystem::path& fresh, const std::filesystem::path& path);

// A name for the new content of the file at `path`, beside it: "<name>.<16 random hexadecimal digits>.new".
std::filesystem::path FreshNameFor(const std::filesystem::path& path);
// True for all names that FreshNameFor may give.
bool IsFreshNameFor(const std::filesystem::path& fresh, const std::filesystem::path& path);

}
