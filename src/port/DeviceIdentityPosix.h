#pragma once
// What the system tells about a serial device without opening it.

#include "base/KelText.h"
#include "port/SerialDevicesPosix.h"

#include <filesystem>
#include <optional>

namespace tarvin {

// Texts that the system does not tell are empty.
struct DeviceIdentity {
    KelText maker;
    KelText product;
    KelText serialNumber;
    // The numbers of maker and product as four hexadecimal digits, such as 0403.
    KelText vendorId;
    KelText productId;
    KelText driver;
    // The USB device's own number; none for a device without USB.
    std::optional<dev_t> usbId;
};

// `path` is one of the paths of the device `id`. Reads a few short files of the system.
DeviceIdentity IdentifyDevice(const std::filesystem::path& path, dev_t id, const DeviceRoots& roots);

// The first line of a short file of the system, without control characters. Empty if it cannot be read.
KelText ReadAttribute(const std::filesystem::path& file);

}
