#pragma once
// InspectPorts on a computer whose folders of the system lie elsewhere, for tests.

#include "port/PortReport.h"
#include "port/SerialDevicesPosix.h"

namespace tarvin {

struct InspectionRoots {
    DeviceRoots devices = {};
    std::filesystem::path processes = "/proc";
    std::filesystem::path udevData = "/run/udev/data";
};

std::vector<PortReport> InspectPorts(const std::filesystem::path& pathsFile, const KelText& currentPort,
                                     const KelText& ownPort, const InspectionRoots& roots);

}
