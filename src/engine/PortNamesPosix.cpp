#include "engine/PortNames.h"
#include "framework/Profile.h"

namespace tarvin {

namespace {

constexpr std::size_t maximumPathUnits = 4096;

}

std::optional<std::filesystem::path> PortNames::DeviceOf(const KelText& portName) const {
    const auto profile = Profile::Read(file);
    if (!profile)
        return std::nullopt;
    const KelText device = profile->Text(u"PORTS", portName, u"", maximumPathUnits);
    if (device.empty())
        return std::nullopt;
    return ToPath(device);
}

}
