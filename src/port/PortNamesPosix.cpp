#include "port/PortEntriesPosix.h"
#include "port/PortNames.h"

namespace tarvin {

std::optional<std::filesystem::path> PortNames::DeviceOf(const KelText& portName) const {
    const auto profile = Profile::Read(file);
    return profile ? PortDevice(*profile, portName) : std::nullopt;
}

}
