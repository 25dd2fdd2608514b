#pragma once
// The Windows programs under Wine, for tests that hold the other end of their line. The environment variable
// TARVIN_WINDOWS_PROGRAMS names their folder; where it is set, the tests drive them in place of this system's own.

#include <filesystem>
#include <string>
#include <vector>

namespace tarvin::test {

bool AreWindowsProgramsMeant();

// The words that start one of them.
std::vector<std::string> WindowsProgramWords(const std::string& program);

// Leads COM1 of the programs, or COM12, to the device, or to the link that leads to one, from the next opening on. A
// folder is what cannot be opened: where nothing is, Wine takes a port of this machine.
void LeadWindowsPortTo(const std::filesystem::path& device, int number = 1);

// The name of a file as the program under test has it.
std::string NameForProgram(const std::filesystem::path& path);

}
