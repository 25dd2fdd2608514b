#pragma once
// Gives a machine a serial device: for the option --assign-port, so that scripts need to read neither KEL.INI nor
// settings, and for the setup.

#include "base/Result.h"

#include <filesystem>

namespace tarvin {

// Gives the device a port name in KEL.INI, and the machine settings with that port if it has none. Makes an
// installation in the folder that TARVINDL_HOME names, or else the user's, if there is none.
//
// The name is the one in the machine's settings, else the one that the device has already, else the first free one.
// Returns lines of text that say what was done. Fails if there is no such device, if the settings name a port of
// another device, or if a file cannot be read or written; a refusal changes no file. Always fails on Windows, where a
// port needs no entry. Waits for the disk, and up to 2 s for other programs that change KEL.INI.
Result<KelText> AssignPort(const std::filesystem::path& device, const KelText& machineName);

// The port name for `port`, which a user has given: a port name in any case, or the path of a device, which gets an
// entry in KEL.INI of the installation if it has none. A port name need not have a device; if it has no entry, devices
// without one get numbers like in a list of ports, because the user may have read the name there. Waits like
// AssignPort.
Result<KelText> PortNameFor(const std::filesystem::path& pathsFile, const KelText& port);

// What PortNameFor would give now, without a change of KEL.INI, which may be missing.
Result<KelText> PlannedPortName(const std::filesystem::path& pathsFile, const KelText& port);

}
