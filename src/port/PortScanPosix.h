#pragma once
// See PortScan.h. With the places that a test chooses.

#include "port/PortScan.h"
#include "port/SerialDevicesPosix.h"

namespace tarvin {

std::vector<FoundPort> FindPorts(const std::filesystem::path& pathsFile, const KelText& currentPort,
                                 const DeviceRoots& roots);

}
