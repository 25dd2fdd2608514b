#pragma once
// Writes the files by which systemd and udev know a machine. One source for each system: others have neither. One
// thread at a time; blocks for the disk.

#include "files/Installation.h"
#include "setup/InstallationSetup.h"

#include <filesystem>

namespace tarvin {

struct UnitPlaces {
    // In place of /etc, for trying: then no service of the system is told.
    std::filesystem::path etc = "/etc";
    bool tellsSystem = true;
};

// Brings the drop-in with the folders of the machine and the rules for its port up to date, and has systemd and udev
// read them. Each file is replaced in one step. Rules of a port that is away stay. Does nothing on Windows.
Result<SetupReport> WriteUnits(const Installation& installation, const KelText& machineName, const UnitPlaces& places);

}
