#include "engine/PortNames.h"
#include "framework/NativeFile.h"
#include "framework/Profile.h"

namespace tarvin {

namespace {

constexpr std::size_t maximumFileSize = 1 << 20;
constexpr std::size_t maximumPathUnits = 4096;

}

std::optional<std::filesystem::path> PortNames::DeviceOf(const KelText& portName) const {
    const auto content = ReadWholeFile(file, maximumFileSize);
    if (!content)
        return std::nullopt;
    const KelText device = Profile(*content).Text(u"PORTS", portName, u"", maximumPathUnits);
    if (device.empty())
        return std::nullopt;
    return ToPath(device);
}

}
