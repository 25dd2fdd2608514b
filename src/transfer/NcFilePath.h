#pragma once
// Where the file of a number lies, and how another file gets there. Any thread; CopyNcFile blocks as long as the disks
// take.

#include "base/KelText.h"
#include "base/Result.h"

#include <filesystem>
#include <string_view>

namespace tarvin {

// Whether the number may name a file: one that leads out of the transfer folder, or to a device, may not.
bool IsUsableFileNumber(std::string_view number);

// The path of a transfer, as status texts show it. An empty folder is the current one.
KelText NcFilePath(const KelText& folder, KelTextView number, const KelText& extension);

// Copies a file to `target`, in one step and in place of a file or link that is there. A failure leaves the target as
// it was. Success without a copy if both are the same file.
Result<> CopyNcFile(const std::filesystem::path& source, const std::filesystem::path& target);

}
