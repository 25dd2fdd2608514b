#pragma once
// The files that uploads have replaced. Each stays as "<name>.<time>" in the folder "replaced" beside the file, the
// time as "yyyy-mm-dd_hhmmss" in UTC. A second file of one second gets "_2" behind its time, a third one "_3". Any
// thread.

#include "base/Result.h"

#include <filesystem>

namespace tarvin {

// Gives the file at `path` a second name, or a copy, in "replaced", and makes that folder. Gives the path of the kept
// file. Blocks until it is on the disk.
Result<std::filesystem::path> KeepReplaced(const std::filesystem::path& path);

// Deletes the kept files of `path` but the newest `keptCount`. Leaves every other file.
void PruneReplaced(const std::filesystem::path& path, int keptCount);

// A free name beside `path` for an upload that is whole and could not take its name: "<name>.<time>.whole".
std::filesystem::path WholeNameFor(const std::filesystem::path& path);

// The most characters that any of these names has behind that of the file.
inline constexpr std::size_t longestTimeEnding = 28;

}
