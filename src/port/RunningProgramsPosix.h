#pragma once
// Which programs run and which devices they have open, as far as the system shows them to this user.

#include "base/KelText.h"

#include <filesystem>
#include <map>
#include <set>

#include <sys/types.h>

namespace tarvin {

struct RunningPrograms {
    // Short names, of at most 15 characters.
    std::set<KelText> names;
    // By device, the first other program that has it open.
    std::map<dev_t, KelText> holders;
};

// `processes` is the folder with one folder for each process. This process itself is left out.
RunningPrograms FindRunningPrograms(const std::filesystem::path& processes);

}
