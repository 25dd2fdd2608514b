#pragma once
// The first lines of a comms log: version, system and settings. A reader of the log learns from them how the link was
// set up. Any thread.

#include "settings/DownloadSettings.h"

#include <string>
#include <vector>

namespace tarvin {

// The lines in their order, as UTF-8 without line ends.
std::vector<std::string> DiagnosticsReport(const DownloadSettings& settings);

}
