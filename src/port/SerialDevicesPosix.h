#pragma once
// The serial devices of this computer. Knows nothing of port names.

#include <filesystem>
#include <vector>

#include <sys/types.h>

namespace tarvin {

struct SerialDevice {
    // The path that stays with the device when it is plugged in elsewhere, where there is one.
    std::filesystem::path path;
    dev_t id = 0;
};

// Where the system keeps them.
struct DeviceRoots {
    std::filesystem::path terminalClass = "/sys/class/tty";
    std::filesystem::path devices = "/dev";
    std::filesystem::path byId = "/dev/serial/by-id";
};

// In the order of their names, ttyS2 before ttyS10. Without consoles in use. Opens nothing.
std::vector<SerialDevice> FindSerialDevices(const DeviceRoots& roots);

// False for a place on the board where a serial port could be and is none. Opens the device if there can be doubt.
bool HasHardware(const SerialDevice& device);

// True if the device is there and nobody has it to himself. Opens it, without waiting and without a change of its
// modes.
bool IsFree(const std::filesystem::path& device);

// The device that the path leads to, by whatever way; 0 if it leads to none.
dev_t DeviceId(const std::filesystem::path& path);

}
