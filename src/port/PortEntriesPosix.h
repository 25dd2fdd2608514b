#pragma once
// The section PORTS of KEL.INI, which maps port names to devices. Knows nothing of opening.

#include "files/Profile.h"
#include "port/SerialDevicesPosix.h"

#include <chrono>
#include <optional>
#include <vector>

namespace tarvin {

// None if the name has no entry or an empty one.
std::optional<std::filesystem::path> PortDevice(const Profile& profile, KelTextView portName);

// Gives each device that no entry leads to the first free number from 1 to 9, as long as there are any, and writes the
// entries. What KEL.INI holds otherwise stays as it is to the byte. Several programs may do so at once; who has to wait
// for another longer than `longestWait` writes nothing.
// The profile with the new entries, whether or not they could be written.
Profile AssignPorts(const std::filesystem::path& pathsFile, const std::vector<SerialDevice>& devices,
                    std::chrono::milliseconds longestWait = std::chrono::seconds(2));

}
