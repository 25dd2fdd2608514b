#pragma once
// See PortScan.h. With the places that a test chooses.

#include "engine/PortScan.h"
#include "engine/SerialDevicesPosix.h"

namespace tarvin {

std::vector<FoundPort> FindPorts(const std::filesystem::path& pathsFile, const KelText& currentPort,
                                 const DeviceRoots& roots);

}
