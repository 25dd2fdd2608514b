#pragma once
// Tries what this account may do in a folder. Any thread; blocks for the disk, and as long as a lost network drive
// does.

#include "base/KelText.h"

#include <filesystem>
#include <optional>

namespace tarvin {

enum class FolderUse { Read, Write };

struct FolderProblem {
    KelText text;
    // For a shell. Empty if no command helps.
    KelText command;
};

// None if the folder can be used. For Write it makes a file there and deletes it.
std::optional<FolderProblem> TryFolder(const std::filesystem::path& folder, FolderUse use);

// None if this account can make the folder, with those above it, or use it for files. Tries it in the lowest folder
// that is there, like TryFolder.
std::optional<FolderProblem> TryMakingFolder(const std::filesystem::path& folder);

// The problems of a machine's two folders, in words for a status line. Empty without any.
KelText DescribeFolderProblems(const KelText& uploadPath, const KelText& downloadPath);

}
