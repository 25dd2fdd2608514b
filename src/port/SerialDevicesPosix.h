#pragma once
// The serial devices of this computer.

#include <filesystem>
#include <vector>

#include <sys/types.h>

namespace tarvin {

struct SerialDevice {
    // Below by-id where the system has such a path: it stays the same when the device is plugged in elsewhere.
    std::filesystem::path path;
    dev_t id = 0;
};

// The folders in which the system keeps them.
struct DeviceRoots {
    std::filesystem::path terminalClass = "/sys/class/tty";
    std::filesystem::path devices = "/dev";
    std::filesystem::path byId = "/dev/serial/by-id";
};

// Ordered by name, ttyS2 before ttyS10, without consoles in use. Opens nothing.
std::vector<SerialDevice> FindSerialDevices(const DeviceRoots& roots);

// False for a serial port that the kernel has a name for and the board does not have. Opens the ports of the board.
bool HasHardware(const SerialDevice& device);

// True if the device is present and no program uses it alone. Opens it without blocking and leaves its modes as they
// are.
bool IsFree(const std::filesystem::path& device);

// True if an entry of KEL.INI can hold the path and give the same path back.
bool CanStandInEntry(const std::filesystem::path& path);

// The device that the path leads to, through links too; 0 if it leads to none.
dev_t DeviceId(const std::filesystem::path& path);

}
