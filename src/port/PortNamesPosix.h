#pragma once
// The section PORTS of KEL.INI: a device for each port name, as in "COM1=/dev/ttyUSB0".

#include "base/Result.h"
#include "files/Profile.h"
#include "port/PortNames.h"
#include "port/SerialDevicesPosix.h"

#include <chrono>
#include <optional>
#include <vector>

namespace tarvin {

// None if the name has no entry or an empty one.
std::optional<std::filesystem::path> PortDevice(const Profile& profile, KelTextView portName);

// Gives each device without an entry the first free number from 1 to 9, as long as there is one, and writes the
// entries. Keeps every other byte of KEL.INI. Several programs may do so at once: each waits for the others, and writes
// nothing when `longestWait` has passed. Returns the profile with the new entries, whether or not they could be
// written.
Profile AssignPorts(const std::filesystem::path& pathsFile, const std::vector<SerialDevice>& devices,
                    std::chrono::milliseconds longestWait = std::chrono::seconds(2));

// The name that AssignPortName would give the device, or its failure, with the entries of `profile`.
Result<KelText> ChoosePortName(const Profile& profile, const std::filesystem::path& device, KelTextView wantedName);

// Gives the device a name and returns it: `wantedName` if it is not empty, else the name that the device has already,
// else the first number from 1 to 256 without an entry. A new name becomes an entry of KEL.INI. Fails, and leaves
// KEL.INI as it was, if the wanted name belongs to another device or has an empty entry, or if KEL.INI cannot be read
// or written. Waits for other programs like AssignPorts, 2 s at most. Requires the absolute path of a device, and a
// wanted name that is a port name or empty.
Result<KelText> AssignPortName(const std::filesystem::path& pathsFile, const std::filesystem::path& device,
                               KelTextView wantedName);

// FindPorts with the devices below other folders, for tests.
std::vector<FoundPort> FindPorts(const std::filesystem::path& pathsFile, const KelText& currentPort,
                                 const DeviceRoots& roots);

}
