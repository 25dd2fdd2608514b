#pragma once
// Adds a machine to an installation, or changes one that is there. For tarvindl-setup and for the window of the first
// start. One thread at a time; blocks for the disk.

#include "setup/InstallationSetup.h"
#include "setup/SettingsChange.h"

#include <optional>

namespace tarvin {

struct MachineWish {
    KelText name;
    // A port name, or the path of a device.
    std::optional<KelText> port;
    std::vector<NamedValue> settings;
    // Folders among the settings that are made if they are missing.
    std::vector<std::filesystem::path> folders;
};

struct MachineOutcome {
    // What was done, and what was so already.
    SetupReport report;
    // A program that runs works with other settings than those in the file now.
    bool hasChanged = false;
};

// The reason for which SetUpMachine would refuse the wish now. Changes nothing. The installation may be a planned one.
Result<> TryMachine(const Installation& installation, const MachineWish& wish);

// The reason why no machine can have the name.
Result<> CheckMachineName(KelTextView name);

// Makes or changes the machine. Tries everything first, so that a refusal changes nothing; a disk that fails in the
// middle may leave the name of a port in KEL.INI.
Result<MachineOutcome> SetUpMachine(const Installation& installation, const MachineWish& wish);

}
