#pragma once
// Windows programs under Wine, for tests of this system that hold the controller's end of their line. With the
// environment variable TARVIN_WINDOWS_PROGRAMS set to a folder, the tests run the programs of that folder instead of
// this system's own.

#include <filesystem>
#include <string>
#include <vector>

namespace tarvin::test {

bool AreWindowsProgramsMeant();

// The command that starts a Windows program. Requires AreWindowsProgramsMeant().
std::vector<std::string> WindowsProgramWords(const std::string& program);

// Links the programs' port COM<number> to the device at `device`, from the next time they open it. A folder makes
// opening the port fail. A missing path does not: Wine then takes a port of this computer.
void LeadWindowsPortTo(const std::filesystem::path& device, int number = 1);

// The path as the program under test writes it.
std::string NameForProgram(const std::filesystem::path& path);

}
