#pragma once
// Which device a port name stands for. Machine settings carry COM1, COM2 ... on every system. Knows nothing of opening.

#include "base/KelText.h"

#include <filesystem>
#include <optional>

namespace tarvin {

class PortNames {
public:
    // `pathsFile` is the installation's KEL.INI, read anew at each look-up: an entry added while the program runs takes
    // effect at the next attempt to open the port.
    explicit PortNames(std::filesystem::path pathsFile) : file(std::move(pathsFile)) {}

    // None if the name stands for no device.
    std::optional<std::filesystem::path> DeviceOf(const KelText& portName) const;

private:
    std::filesystem::path file;
};

}
