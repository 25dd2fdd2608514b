#pragma once
// Makes an installation: its folder with KEL.INI, the folder for NC files, and links to dictionary and help book. One
// thread at a time; blocks for the disk.

#include "files/Installation.h"

#include <filesystem>
#include <vector>

namespace tarvin {

struct InstallationWish {
    // Empty: the installation that a program would find, or else where it would look for the user's.
    std::filesystem::path folder = {};
    // The system's, for services.
    bool isSystem = false;
};

// The folder for the wish, which may be missing. Fails if the environment names no such place.
Result<std::filesystem::path> FolderFor(const InstallationWish& wish);

// Where packages put data that all installations share, or a build its own. Empty if the file is not there.
std::filesystem::path SharedFile(const char* name);

// The names of the installation's machines, by their settings files, in the order of the alphabet.
std::vector<KelText> MachinesOf(const std::filesystem::path& folder);

// The installation in `folder`, or the one that MakeInstallation would make there. Fails if KEL.INI is there and cannot
// be used, or if this user cannot make the folder. Changes nothing.
Result<Installation> PlannedInstallation(const std::filesystem::path& folder);

// Lines that say what was done, and what was there already.
using SetupReport = std::vector<KelText>;

// Makes what is missing in `folder`, and changes nothing else. Fails if KEL.INI is there and cannot be used, or if a
// file cannot be made.
Result<SetupReport> MakeInstallation(const std::filesystem::path& folder);

}
