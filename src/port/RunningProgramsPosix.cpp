#include "port/RunningProgramsPosix.h"

#include "base/FirstUseMessages.h"
#include "base/Process.h"
#include "port/DeviceIdentityPosix.h"

#include <algorithm>
#include <string>
#include <system_error>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

constexpr int mostProcesses = 32768;
constexpr int mostOpenFiles = 4096;

void AddHolder(const fs::path& process, const KelText& holder, std::map<dev_t, KelText>& holders) {
    std::error_code error;
    int left = mostOpenFiles;
    for (fs::directory_iterator file(process / "fd", error), end; !error && file != end && left > 0;
         file.increment(error), --left) {
        std::error_code isGone;
        const fs::path target = fs::read_symlink(file->path(), isGone);
        // Only devices are looked at: a file on a server that is away would block.
        if (isGone || !target.native().starts_with("/dev/"))
            continue;
        if (const dev_t id = DeviceId(file->path()); id != 0)
            holders.emplace(id, holder);
    }
}

}

RunningPrograms FindRunningPrograms(const fs::path& processes) {
    RunningPrograms programs;
    const std::string own = std::to_string(OwnProcessId());
    std::error_code error;
    int left = mostProcesses;
    for (fs::directory_iterator entry(processes, error), end; !error && entry != end && left > 0;
         entry.increment(error), --left) {
        const std::string number = entry->path().filename().string();
        if (number == own || !std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; }))
            continue;
        const KelText name = ReadAttribute(entry->path() / "comm");
        if (name.empty())
            continue;
        programs.names.insert(name);
        AddHolder(entry->path(), Filled(text::portState::program, {name, FromUtf8(number)}), programs.holders);
    }
    return programs;
}

}
