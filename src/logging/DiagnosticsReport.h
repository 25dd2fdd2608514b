#pragma once
// The head of a comms log: version, system and settings, so that a log that was sent in tells how the link was set up.
// Knows nothing of the engine. Pure, any thread.

#include "settings/DownloadSettings.h"

#include <string>
#include <vector>

namespace tarvin {

// The lines in order, UTF-8, without line ends.
std::vector<std::string> DiagnosticsReport(const DownloadSettings& settings);

}
