#pragma once
// Finds the serial ports that a machine can be given. Knows nothing of settings or windows.

#include "base/KelText.h"

#include <filesystem>
#include <vector>

namespace tarvin {

struct FoundPort {
    KelText name;
    // What the system calls the device behind the name; empty if that is not known.
    KelText device;
};

// The port `currentPort` and, of COM1 to COM9, those whose device is there and free, in the order of their numbers. The
// current port is always among them, behind the others if it is none of COM1 to COM9, and is not touched: the caller
// may hold it open itself. `pathsFile` is the installation's KEL.INI.
//
// Opens and closes each of the devices, and where names are given by KEL.INI numbers those that have none yet, which
// waits for the disk and for other programs that are doing the same, two seconds at most. For the moment when a user
// wants to choose, not for a poll. One thread at a time.
std::vector<FoundPort> FindPorts(const std::filesystem::path& pathsFile, const KelText& currentPort);

}
