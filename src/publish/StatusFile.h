#pragma once
// The file in which one program publishes its status. One source for each system. Any thread.

#include "base/Result.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace tarvin {

// A reader takes no longer file, and a writer makes none.
inline constexpr std::size_t longestStatusFile = 256 * 1024;

// How the names of status files end.
inline constexpr std::string_view statusFileEnding = ".json";

// The folder's path without links, so that each way to an installation leads to one name.
std::filesystem::path WholePath(const std::filesystem::path& folder);

// The name of a machine's file: the machine's name as it stands in file names, cut after 60 characters, and a mark of
// the whole name and of the installation. One machine of one installation always has the same name.
std::filesystem::path StatusFileName(KelTextView machineName, const std::filesystem::path& installation);

// Replaces the file in one step: a reader finds the whole old content or the whole new one. Owner and group of the file
// may read it; the group is that of the folder, as far as the system permits. Follows no link. Does not wait for a
// disk: the content matters only as long as the program runs.
Result<> WriteStatusFile(const std::filesystem::path& path, std::string_view content);

// The whole content. Fails if the file is longer than `longestStatusFile`, is no regular file, or belongs to a user who
// owns neither the folder nor this process: such a file does not come from a program that was trusted with the folder.
// isGone if there is no such file; isBusy if it is just being replaced.
Result<std::string> ReadStatusFile(const std::filesystem::path& path);

}
