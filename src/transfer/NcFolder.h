#pragma once
// The files that a machine may ask for, as they lie in its download folder. Any thread; blocks for as long as the disk
// takes.

#include "base/KelText.h"
#include "base/Result.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace tarvin {

struct NcFolderEntry {
    KelText number;
    // The whole file; for an incomplete one its ".part".
    std::filesystem::path path;
    KelText comment; // the first of the program
    std::uintmax_t size = 0;
    std::chrono::system_clock::time_point changed;
    // Only the ".part" of an upload is there: the machine cannot get it.
    bool isIncomplete = false;
};

// Sorted by number, as people count: 9 before 10. Files that the machine cannot name are left out. Ends early once
// `stop` is set. Fails if the folder cannot be read.
Result<std::vector<NcFolderEntry>> ListNcFolder(const KelText& folder, const KelText& extension,
                                                const std::atomic<bool>& stop);

// Whether `left` comes before `right` where digits count as numbers.
bool ComesBefore(KelTextView left, KelTextView right);

}
