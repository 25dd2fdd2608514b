#include "port/DeviceIdentityPosix.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include <sys/sysmacros.h>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t longestAttribute = 256;
// From the terminal over port and interface to the USB device it takes three steps.
constexpr int mostParents = 6;

// The folder of the device in the class of terminals. Empty if there is none.
fs::path ClassFolder(dev_t id, const DeviceRoots& roots) {
    std::error_code error;
    for (fs::directory_iterator entry(roots.terminalClass, error), end; !error && entry != end;
         entry.increment(error)) {
        if (DeviceId(roots.devices / entry->path().filename()) == id)
            return entry->path();
    }
    return {};
}

// The folder of the USB device to which `hardware` belongs. Empty if it belongs to none.
fs::path UsbFolder(fs::path hardware) {
    std::error_code error;
    for (int step = 0; step < mostParents && hardware.has_relative_path(); ++step, hardware = hardware.parent_path()) {
        if (fs::exists(hardware / "idVendor", error))
            return hardware;
    }
    return {};
}

std::optional<dev_t> ReadDeviceNumber(const fs::path& file) {
    unsigned majorNumber = 0;
    unsigned minorNumber = 0;
    if (std::sscanf(ToUtf8(ReadAttribute(file)).c_str(), "%u:%u", &majorNumber, &minorNumber) != 2)
        return std::nullopt;
    return makedev(majorNumber, minorNumber);
}

// The system builds such a name as "usb-MAKER_PRODUCT_SERIAL-if00-port0".
KelText ProductFromLastingName(std::string name) {
    constexpr std::string_view prefix = "usb-";
    if (!name.starts_with(prefix))
        return {};
    name.erase(0, prefix.size());
    name.erase(std::min(name.rfind("-if"), name.size()));
    std::replace(name.begin(), name.end(), '_', ' ');
    return FromUtf8(name);
}

}

KelText ReadAttribute(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::array<char, longestAttribute> bytes = {};
    stream.read(bytes.data(), bytes.size());
    std::string line(bytes.data(), static_cast<std::size_t>(stream.gcount()));
    line.erase(std::min(line.find('\n'), line.size()));
    std::erase_if(line, [](char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F; });
    return KelText(Trimmed(FromUtf8(line)));
}

DeviceIdentity IdentifyDevice(const fs::path& path, dev_t id, const DeviceRoots& roots) {
    DeviceIdentity identity;
    std::error_code error;
    const fs::path terminal = ClassFolder(id, roots);
    const fs::path hardware = terminal.empty() ? fs::path() : fs::canonical(terminal / "device", error);
    if (!hardware.empty()) {
        identity.driver = FromPath(fs::canonical(hardware / "driver", error).filename());
        if (const fs::path usb = UsbFolder(hardware); !usb.empty()) {
            identity.maker = ReadAttribute(usb / "manufacturer");
            identity.product = ReadAttribute(usb / "product");
            identity.serialNumber = ReadAttribute(usb / "serial");
            identity.vendorId = ReadAttribute(usb / "idVendor");
            identity.productId = ReadAttribute(usb / "idProduct");
            identity.usbId = ReadDeviceNumber(usb / "dev");
        }
    }
    if (identity.product.empty())
        identity.product = ProductFromLastingName(path.filename().string());
    return identity;
}

}
