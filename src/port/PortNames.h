#pragma once
// Names of serial ports: COM1, COM2 ... on every system. On Windows the system knows them. On POSIX the section PORTS
// of the file KEL.INI gives each name its device.

#include "base/KelText.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace tarvin {

class PortNames {
public:
    // `pathsFile` is the installation's KEL.INI. Each look-up reads it again: a new entry takes effect when the port is
    // opened the next time.
    explicit PortNames(std::filesystem::path pathsFile) : pathsFile(std::move(pathsFile)) {}

    // None if the name stands for no device.
    std::optional<std::filesystem::path> DeviceOf(const KelText& portName) const;

private:
    std::filesystem::path pathsFile;
};

// A user chooses from COM1 to COM9. Windows numbers ports up to COM256.
inline constexpr int highestOfferedPort = 9;
inline constexpr int highestPort = 256;

struct FoundPort {
    KelText name;
    // The system's name of the device, for people; empty if the system does not tell.
    KelText device;
};

// The ports that a user may choose: `currentPort`, and COM1 to COM9 where the device is present and free, ordered by
// number. The current port is always in the list, at the end if it is none of COM1 to COM9. Its device is not opened,
// because the caller itself may have it open.
//
// Opens and closes the device of each name. On POSIX it also writes an entry for each device that has none, and waits
// for the disk and up to 2 s for other programs that write entries. For a user who wants to choose, not for a poll. One
// thread at a time.
std::vector<FoundPort> FindPorts(const std::filesystem::path& pathsFile, const KelText& currentPort);

// The list of FindPorts. `isFree` is asked for COM1 to COM9 apart from the current port, `deviceOf` for each port of
// the list.
std::vector<FoundPort> ListPorts(const KelText& currentPort, const std::function<bool(const KelText& name)>& isFree,
                                 const std::function<KelText(const KelText& name)>& deviceOf);

// True for COM1 to COM256, in any case.
bool IsPortName(KelTextView name);

}
