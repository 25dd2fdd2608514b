#pragma once
// What an installation's KEL.INI says to the service program, in its section "Service". Knows nothing of the engine.

#include "base/KelText.h"
#include "files/Installation.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace tarvin {

struct ServiceSettings {
    // "comms log": the file to trace the line in;"%s" in it stands for the machine's name, which is added to a name
    // without it, because machines do not share a log; a relative one is below the installation. None: no log.
    std::optional<std::filesystem::path> commsLog;
    // "comms log size": megabytes after which the file is rolled over, 1 to 1000; 10 if nothing sensible is given. Two
    // files of this size are all that the log ever takes.
    std::uint64_t commsLogSizeLimit = 0;
};

// What cannot be read counts as not given.
ServiceSettings ReadServiceSettings(const Installation& paths, const KelText& machineName);

}
