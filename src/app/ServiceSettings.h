#pragma once
// The section "Service" of KEL.INI, which sets up the service program.

#include "base/KelText.h"
#include "files/Installation.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace tarvin {

struct ServiceSettings {
    // "comms log": the file for the trace of the line; none without one. "%s" in it stands for the machine's name; a
    // name without "%s" gets the machine's name added, because machines must not share a log. A relative path is below
    // the installation.
    std::optional<std::filesystem::path> commsLog;
    // "comms log size": the file rolls over at so many megabytes, 1 to 1000, or at 10 without a number in this range.
    // The log never takes more than two files of this size.
    std::uint64_t commsLogSizeLimit = 0;
};

// A missing or damaged entry counts as not given.
ServiceSettings ReadServiceSettings(const Installation& installation, const KelText& machineName);

}
