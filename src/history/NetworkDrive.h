#pragma once

#include <filesystem>

namespace tarvin {

// Whether the folder is on a network drive: several computers may use it, and they share no memory. True if the system
// does not tell. Any thread; may block for as long as the drive takes.
bool IsOnNetworkDrive(const std::filesystem::path& folder);

}
