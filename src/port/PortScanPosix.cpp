#include "port/PortScanPosix.h"

#include "port/PortEntriesPosix.h"
#include "port/PortList.h"

namespace tarvin {

std::vector<FoundPort> FindPorts(const std::filesystem::path& pathsFile, const KelText& currentPort) {
    return FindPorts(pathsFile, currentPort, DeviceRoots());
}

std::vector<FoundPort> FindPorts(const std::filesystem::path& pathsFile, const KelText& currentPort,
                                 const DeviceRoots& roots) {
    const Profile profile = AssignPorts(pathsFile, FindSerialDevices(roots));
    const auto deviceOf = [&](const KelText& name) {
        const auto device = PortDevice(profile, name);
        return device ? FromPath(*device) : KelText();
    };
    return ListPorts(
        currentPort, [&](const KelText& name) { return IsFree(ToPath(deviceOf(name))); }, deviceOf);
}

}
