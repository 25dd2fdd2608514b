#pragma once
// The option --assign-port: gives a machine a serial device, so that scripts need to read neither KEL.INI nor settings.

#include "base/Result.h"

#include <filesystem>

namespace tarvin {

// Gives the device a port name in KEL.INI, and the machine settings with that port if it has none. Makes an
// installation in the folder that TARVINDL_HOME names, or else the user's, if there is none. `commandLine` is read for
// the machine's name as in any start of the program.
//
// The name is the one in the machine's settings, else the one that the device has already, else the first free one.
// Returns lines of text that say what was done. Fails if there is no such device, if the settings name a port of
// another device, or if a file cannot be read or written; a refusal changes no file. Always fails on Windows, where a
// port needs no entry. Waits for the disk, and up to 2 s for other programs that change KEL.INI.
Result<KelText> AssignPort(const std::filesystem::path& device, KelTextView commandLine);

}
