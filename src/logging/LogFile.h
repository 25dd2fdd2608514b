#pragma once
// Appends to log files in such a way that no line stays torn. One thread at a time for each file.

#include "files/KelFile.h"

#include <filesystem>
#include <string_view>

namespace tarvin {

// Appends whole lines to the open file, whose path is `path`. After a failure, such as a full disk, the part that was
// written is cut off again, unless another program has appended to the file since then.
Result<> AppendLines(KelFile& file, const std::filesystem::path& path, std::string_view lines);

// True if the file ends within a line: a program was killed while it wrote. False for a missing or empty file.
bool EndsWithinLine(const std::filesystem::path& path);

}
