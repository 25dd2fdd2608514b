#include "port/PortNames.h"

namespace tarvin {

std::optional<std::filesystem::path> PortNames::DeviceOf(const KelText& portName) const {
    // The bare name reaches one-digit ports only; the device prefix reaches them all.
    if (portName.empty() || portName.find_first_of(u"\\/") != KelText::npos)
        return std::nullopt;
    return std::filesystem::path(L"\\\\.\\" + std::wstring(portName.begin(), portName.end()));
}

}
